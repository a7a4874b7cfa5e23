#include "picture/svg_path.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace {

constexpr size_t kNone = std::string_view::npos;
constexpr std::string_view kQuotes = "\"'";
constexpr int kCubicSteps = 24;
constexpr int kQuadraticSteps = 18;
constexpr int kMostNumbers = 6; // a command takes

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isWord(char c) {
    return isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool isCommand(char c) {
    return std::string_view("AaCcHhLlMmQqSsTtVvZz").find(c) != kNone;
}

size_t skipSpace(std::string_view text, size_t i) {
    while (i < text.size() && isSpace(text[i])) ++i;
    return i;
}

size_t skipDigits(std::string_view text, size_t i) {
    while (i < text.size() && isDigit(text[i])) ++i;
    return i;
}

bool isAt(std::string_view text, size_t i, char c) {
    return i < text.size() && text[i] == c;
}

// Matches \s*=\s*["']([^"']+)["'] at `i`. Sets the capture and the end of the match.
bool matchValue(std::string_view text, size_t i, std::string_view& value, size_t& end) {
    i = skipSpace(text, i);
    if (!isAt(text, i, '=')) return false;
    i = skipSpace(text, i + 1);
    if (i >= text.size() || kQuotes.find(text[i]) == kNone) return false;
    const size_t begin = i + 1;
    const size_t close = text.find_first_of(kQuotes, begin);
    if (close == kNone || close == begin) return false;
    value = text.substr(begin, close - begin);
    end = close + 1;
    return true;
}

// Length of the number that begins at `i`; 0 when none does.
size_t numberLength(std::string_view text, size_t i) {
    const size_t begin = i;
    if (i < text.size() && (text[i] == '-' || text[i] == '+')) ++i;
    const size_t whole = i;
    i = skipDigits(text, i);
    const bool hasWhole = i > whole;
    if (isAt(text, i, '.')) {
        const size_t end = skipDigits(text, i + 1);
        if (!hasWhole && end == i + 1) return 0;
        i = end;
    } else if (!hasWhole) {
        return 0;
    }
    if (isAt(text, i, 'e') || isAt(text, i, 'E')) {
        size_t exponent = i + 1;
        if (isAt(text, exponent, '-') || isAt(text, exponent, '+')) ++exponent;
        const size_t end = skipDigits(text, exponent);
        if (end > exponent) i = end;
    }
    return i - begin;
}

// The path as it is drawn.
struct Pen {
    std::vector<SvgContour>* contours = nullptr;
    size_t points = 0;
    SvgContour contour;                      // in progress
    SvgPoint at;                             // the current point
    SvgPoint start;                          // of the contour
    bool reopens = false;                    // drawing goes on behind a close without a move
    SvgPoint cubicControl, quadraticControl; // the last ones
    bool afterCubic = false, afterQuadratic = false;
};

void storeContour(Pen& pen) {
    if (pen.contour.size() >= 3) pen.contours->push_back(std::move(pen.contour));
    pen.contour.clear();
}

void append(Pen& pen, SvgPoint point) {
    pen.contour.push_back(point);
    ++pen.points;
}

void beginDrawing(Pen& pen) {
    if (pen.reopens) append(pen, pen.start);
    pen.reopens = false;
}

void moveTo(Pen& pen, SvgPoint point) {
    storeContour(pen);
    pen.at = pen.start = point;
    pen.reopens = false;
    append(pen, point);
}

void lineTo(Pen& pen, SvgPoint point) {
    beginDrawing(pen);
    append(pen, point);
    pen.at = point;
}

void closePath(Pen& pen) {
    storeContour(pen);
    pen.at = pen.start;
    pen.reopens = true;
}

void cubicTo(Pen& pen, SvgPoint a, SvgPoint b, SvgPoint end) {
    beginDrawing(pen);
    const SvgPoint from = pen.at;
    for (int i = 1; i <= kCubicSteps; ++i) {
        const float t = static_cast<float>(i) / kCubicSteps, u = 1.0f - t;
        const float w0 = u * u * u, w1 = 3.0f * u * u * t, w2 = 3.0f * u * t * t, w3 = t * t * t;
        append(pen, {w0 * from.x + w1 * a.x + w2 * b.x + w3 * end.x, w0 * from.y + w1 * a.y + w2 * b.y + w3 * end.y});
    }
    pen.at = end;
    pen.cubicControl = b;
    pen.afterCubic = true;
}

void quadraticTo(Pen& pen, SvgPoint control, SvgPoint end) {
    beginDrawing(pen);
    const SvgPoint from = pen.at;
    for (int i = 1; i <= kQuadraticSteps; ++i) {
        const float t = static_cast<float>(i) / kQuadraticSteps, u = 1.0f - t;
        const float w0 = u * u, w1 = 2.0f * u * t, w2 = t * t;
        append(pen, {w0 * from.x + w1 * control.x + w2 * end.x, w0 * from.y + w1 * control.y + w2 * end.y});
    }
    pen.at = end;
    pen.quadraticControl = control;
    pen.afterQuadratic = true;
}

SvgPoint reflect(SvgPoint point, SvgPoint about) {
    return {2.0f * about.x - point.x, 2.0f * about.y - point.y};
}

char upper(char command) {
    return command >= 'a' ? static_cast<char>(command - 'a' + 'A') : command;
}

// Numbers that a command takes at a time; 0 for those that draw nothing with theirs.
int arity(char command) {
    switch (upper(command)) {
    case 'M':
    case 'L':
    case 'T': return 2;
    case 'H':
    case 'V': return 1;
    case 'C': return 6;
    case 'S':
    case 'Q': return 4;
    default: return 0;
    }
}

// Draws one group of a command's numbers.
void draw(Pen& pen, char command, const float* n) {
    const bool relative = command >= 'a';
    const SvgPoint origin = relative ? pen.at : SvgPoint{};
    const auto point = [&](int i) { return SvgPoint{origin.x + n[i], origin.y + n[i + 1]}; };
    switch (upper(command)) {
    case 'M': moveTo(pen, point(0)); break;
    case 'L': lineTo(pen, point(0)); break;
    case 'H': lineTo(pen, {origin.x + n[0], pen.at.y}); break;
    case 'V': lineTo(pen, {pen.at.x, origin.y + n[0]}); break;
    case 'C': cubicTo(pen, point(0), point(2), point(4)); break;
    case 'S': cubicTo(pen, pen.afterCubic ? reflect(pen.cubicControl, pen.at) : pen.at, point(0), point(2)); break;
    case 'Q': quadraticTo(pen, point(0), point(2)); break;
    case 'T': quadraticTo(pen, pen.afterQuadratic ? reflect(pen.quadraticControl, pen.at) : pen.at, point(0)); break;
    default: break;
    }
}

void beginCommand(Pen& pen, char command) {
    const char name = upper(command);
    if (name == 'Z') closePath(pen);
    pen.afterCubic = pen.afterCubic && (name == 'C' || name == 'S');
    pen.afterQuadratic = pen.afterQuadratic && (name == 'Q' || name == 'T');
}

} // namespace

bool nextPathData(std::string_view text, size_t& position, std::string_view& data) {
    constexpr std::string_view kOpening = "<path";
    size_t begin = text.find(kOpening, position);
    while (begin != kNone) {
        const size_t inside = begin + kOpening.size();
        if (inside < text.size() && isWord(text[inside])) {
            begin = text.find(kOpening, inside);
            continue;
        }
        // The greedy [^>]* gives back from the element's end, so the last "d" that fits counts. Its value may
        // hold a ">". Where no "d" fits, none does for another opening before the same ">".
        const size_t end = std::min(text.find('>', inside), text.size());
        for (size_t d = end; d-- > inside;) {
            size_t valueEnd = 0;
            if (text[d] != 'd' || isWord(text[d - 1]) || !matchValue(text, d + 1, data, valueEnd)) continue;
            position = std::min(text.find('>', valueEnd), text.size());
            return true;
        }
        begin = text.find(kOpening, end);
    }
    position = text.size();
    return false;
}

bool nextNumber(std::string_view text, size_t& position, std::string_view& number) {
    for (; position < text.size(); ++position) {
        const size_t length = numberLength(text, position);
        if (length == 0) continue;
        number = text.substr(position, length);
        position += length;
        return true;
    }
    return false;
}

bool nextPathToken(std::string_view text, size_t& position, std::string_view& token) {
    for (; position < text.size(); ++position) {
        const size_t length = isCommand(text[position]) ? 1 : numberLength(text, position);
        if (length == 0) continue;
        token = text.substr(position, length);
        position += length;
        return true;
    }
    return false;
}

std::string_view findAttribute(std::string_view text, std::string_view name) {
    for (size_t at = text.find(name); at != kNone; at = text.find(name, at + 1)) {
        std::string_view value;
        size_t end = 0;
        if (matchValue(text, at + name.size(), value, end)) return value;
    }
    return {};
}

float svgNumber(std::string_view number) {
    if (!number.empty() && number.front() == '+') number.remove_prefix(1);
    const char* end = number.data() + number.size();
    float value = 0.0f;
    if (std::from_chars(number.data(), end, value).ec == std::errc()) return value;
    constexpr double kLargest = std::numeric_limits<float>::max();
    double wide = 0.0;
    std::from_chars(number.data(), end, wide);
    return static_cast<float>(std::clamp(wide, -kLargest, kLargest));
}

bool parsePathData(std::string_view data, std::vector<SvgContour>& contours, size_t& points) {
    Pen pen;
    pen.contours = &contours;
    pen.points = points;
    char command = 0;
    float numbers[kMostNumbers] = {};
    int count = 0;
    size_t position = 0;
    std::string_view token;
    while (pen.points <= kMaxSvgPoints && nextPathToken(data, position, token)) {
        if (isCommand(token.front())) {
            command = token.front();
            count = 0;
            beginCommand(pen, command);
            continue;
        }
        if (arity(command) == 0) continue;
        numbers[count++] = svgNumber(token);
        if (count < arity(command)) continue;
        draw(pen, command, numbers);
        count = 0;
        // Further pairs behind a move are lines.
        if (upper(command) == 'M') command = static_cast<char>(command - 'M' + 'L');
    }
    storeContour(pen);
    points = pen.points;
    return points <= kMaxSvgPoints;
}

bool readViewBox(std::string_view text, SvgBounds& bounds) {
    const std::string_view value = findAttribute(text, "viewBox");
    if (value.empty()) return false;
    bounds = {};
    float n[4] = {};
    size_t position = 0;
    std::string_view number;
    for (float& each : n) {
        if (!nextNumber(value, position, number)) return true;
        each = svgNumber(number);
    }
    bounds = {n[0], n[1], n[0] + n[2], n[1] + n[3]};
    return true;
}
