#include "ut_Decorator.h"

#include "fw_KnownTokens.h"

namespace utility {

const stringtoken Decorator::m_toToken[36] = {
    strings::TOKEN_NORMAL,        strings::TOKEN_EMPHASIS,   strings::TOKEN_STRONG,      strings::TOKEN_UNDERLINED,
    strings::TOKEN_INVERSE,       strings::TOKEN_HEADING,    strings::TOKEN_SUBHEADING,  strings::TOKEN_TITLE,
    strings::TOKEN_SUBTITLE,      strings::TOKEN_PARAGRAPH,  strings::TOKEN_QUOTATION,   strings::TOKEN_LIST_ITEM,
    strings::TOKEN_TABLE_HEADING, strings::TOKEN_TABLE_CELL, strings::TOKEN_TABLE_TOTAL, strings::TOKEN_SEPARATOR,
    strings::TOKEN_LABEL,         strings::TOKEN_VALUE,      strings::TOKEN_UNIT,        strings::TOKEN_LINK,
    strings::TOKEN_COMMAND,       strings::TOKEN_OPTION,     strings::TOKEN_PROMPT,      strings::TOKEN_SELECTION,
    strings::TOKEN_DISABLED,      strings::TOKEN_COMMENT,    strings::TOKEN_SUCCESS,     strings::TOKEN_WARNING,
    strings::TOKEN_FAILURE,       strings::TOKEN_CRITICAL,   strings::TOKEN_RED,         strings::TOKEN_GREEN,
    strings::TOKEN_YELLOW,        strings::TOKEN_BLUE,       strings::TOKEN_MAGENTA,     strings::TOKEN_CYAN,
};

Decorator::Decorator() = default;

Decorator::~Decorator() = default;

void Decorator::setDecoration(DecorationType) {}

void Decorator::setDecoration(DecorationType, PutStream*) {}

stringtoken Decorator::toToken(DecorationType type) {
    return type >= Normal && type <= Cyan ? m_toToken[type] : strings::TOKEN_UNDEFINED;
}

} // namespace utility
