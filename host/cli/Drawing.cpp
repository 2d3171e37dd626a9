#include "Drawing.h"

#include "hostout/HostModel.h"

Drawing::~Drawing() {
    for (CEntity* entity : entities) {
        entity->Release();
        delete entity;
    }
}
