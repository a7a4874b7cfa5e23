#include "text/shape_text.h"

bool createShapeText(ShapeText&, const JsonValue&, const std::string&, GLuint) {
    return false;
}

void drawShapeText(const ShapeText&, GLuint, float, int, int) {}
