#include "drawing/passes/PlaceDrawing.h"

Placement PlaceDrawing(std::span<Figure> figures, double scale, Origin origin) {
    Placement placement{scale, {}};
    if (scale == 1 && origin == Origin::Keep) return placement;
    if (origin == Origin::Corner) {
        CBox box;
        for (const Figure& figure : figures) box.Add(figure);
        if (!box.IsEmpty()) placement.offset = {-(box.Min().x * scale), -(box.Min().y * scale)};
    }
    for (Figure& figure : figures)
        for (Point& point : figure.points) point = placement(point);
    return placement;
}
