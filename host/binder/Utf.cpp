#include "host/binder/Utf.h"

#include <cstring>

namespace zarvo::host {

namespace {

constexpr char32_t kInvalid = 0xFFFFFFFF;
constexpr char32_t kFirstSupplementary = 0x10000;
constexpr char32_t kLastCodePoint = 0x10FFFF;

/** The forms of UTF-8 by their first byte: what marks it, and the least code point it is for. */
struct Form {
    size_t length;
    char32_t least;
    uint8_t mask;
    uint8_t mark;
};

constexpr Form kForms[] = {
        {1, 0, 0x80, 0x00},
        {2, 0x80, 0xE0, 0xC0},
        {3, 0x800, 0xF0, 0xE0},
        {4, kFirstSupplementary, 0xF8, 0xF0},
};

const Form* FormOf(uint8_t first) {
    for (const Form& form : kForms) {
        if ((first & form.mask) == form.mark) return &form;
    }
    return nullptr;
}

char32_t TakeCodePoint(std::string_view* utf8) {
    const auto first = static_cast<uint8_t>(utf8->front());
    const Form* const form = FormOf(first);
    if (form == nullptr || utf8->size() < form->length) return kInvalid;
    char32_t point = first & static_cast<uint8_t>(~form->mask);
    for (size_t i = 1; i < form->length; ++i) {
        const auto next = static_cast<uint8_t>((*utf8)[i]);
        if ((next & 0xC0) != 0x80) return kInvalid;
        point = point << 6 | (next & 0x3F);
    }
    utf8->remove_prefix(form->length);
    return point >= form->least && point <= kLastCodePoint ? point : kInvalid;
}

void AppendUtf16(char32_t point, std::u16string* text) {
    if (point < kFirstSupplementary) {
        text->push_back(static_cast<char16_t>(point));
        return;
    }
    point -= kFirstSupplementary;
    text->push_back(static_cast<char16_t>(0xD800 + (point >> 10)));
    text->push_back(static_cast<char16_t>(0xDC00 + (point & 0x3FF)));
}

/** Reads units one by one, halves of a pair together. */
class UnitReader {
  public:
    UnitReader(const uint8_t* units, size_t count) : mNext(units), mLeft(count) {}

    bool AtEnd() const { return mLeft == 0; }

    char32_t Take() {
        const char16_t unit = Peek();
        Skip();
        if (unit < 0xD800 || unit > 0xDBFF || AtEnd()) return unit;
        const char16_t low = Peek();
        if (low < 0xDC00 || low > 0xDFFF) return unit;
        Skip();
        return kFirstSupplementary + (static_cast<char32_t>(unit - 0xD800) << 10) + (low - 0xDC00u);
    }

  private:
    char16_t Peek() const {
        char16_t unit = 0;
        std::memcpy(&unit, mNext, sizeof(unit));
        return unit;
    }
    void Skip() {
        mNext += sizeof(char16_t);
        --mLeft;
    }

    const uint8_t* mNext;
    size_t mLeft;
};

size_t Utf8Length(char32_t point) {
    size_t length = 1;
    while (length < 4 && point >= kForms[length].least)
        ++length;
    return length;
}

char* PutUtf8(char32_t point, char* utf8) {
    const Form& form = kForms[Utf8Length(point) - 1];
    for (size_t i = form.length; i-- > 1; point >>= 6) {
        utf8[i] = static_cast<char>(0x80 | (point & 0x3F));
    }
    utf8[0] = static_cast<char>(form.mark | point);
    return utf8 + form.length;
}

}  // namespace

std::optional<std::u16string> Utf8ToUtf16(std::string_view utf8) {
    std::u16string text;
    text.reserve(utf8.size());
    while (!utf8.empty()) {
        const char32_t point = TakeCodePoint(&utf8);
        if (point == kInvalid) return std::nullopt;
        AppendUtf16(point, &text);
    }
    return text;
}

size_t Utf8Length(const uint8_t* units, size_t count) {
    size_t length = 0;
    for (UnitReader reader(units, count); !reader.AtEnd();)
        length += Utf8Length(reader.Take());
    return length;
}

void Utf16ToUtf8(const uint8_t* units, size_t count, char* utf8) {
    for (UnitReader reader(units, count); !reader.AtEnd();)
        utf8 = PutUtf8(reader.Take(), utf8);
}

}  // namespace zarvo::host
