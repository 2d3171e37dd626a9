#include "ErrorNames.h"

const ErrorName* FindErrorName(std::string_view boxText) {
    for (const ErrorName& name : kErrorNames)
        if (boxText.ends_with(name.chinese) || boxText.ends_with(name.english)) return &name;
    return nullptr;
}
