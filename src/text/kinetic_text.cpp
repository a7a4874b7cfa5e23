#include "text/kinetic_text.h"

bool createKineticText(KineticText&, const JsonValue&, const std::string&, GLuint) {
    return false;
}

void drawKineticText(KineticText&, GLuint, float, int, int) {}

void releaseKineticText(KineticText& text) {
    releaseColorFont(text.font);
    text = {};
}
