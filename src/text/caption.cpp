#include "text/caption.h"

bool createCaption(Caption&, const JsonValue&, bool, float, const std::string&, GLuint) {
    return false;
}

void drawCaption(Caption&, GLuint, float, int, int) {}

void releaseCaption(Caption& caption) {
    releaseColorFont(caption.font);
    caption = {};
}
