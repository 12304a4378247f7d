#pragma once

#include "fw_StringToken.h"
#include "ut_Export.h"

namespace utility {

class PutStream;

/// A hook through which a writer asks a stream to mark up what follows, without knowing what kind of stream it is.
///
/// Here the hook does nothing; streams that can render decorations override it. It holds nothing and never fails.
///
///     stream.setDecoration(utility::Decorator::Heading);
///     stream.PutS("Ports\n");
///     stream.setDecoration(utility::Decorator::Normal);
class VXUT_EXPORT Decorator {
public:
    enum DecorationType : int {
        Normal = 0,
        Emphasis = 1,
        Strong = 2,
        Underline = 3,
        Code = 4,
        Heading = 5,
        Subheading = 6,
        Caption = 7,
        Label = 8,
        Value = 9,
        Unit = 10,
        Note = 11,
        Hint = 12,
        Success = 13,
        Information = 14,
        Warning = 15,
        Error = 16,
        Critical = 17,
        Disabled = 18,
        Selected = 19,
        Link = 20,
        Quotation = 21,
        Prompt = 22,
        Command = 23,
        Black = 24,
        Red = 25,
        Green = 26,
        Yellow = 27,
        Blue = 28,
        Magenta = 29,
        Cyan = 30,
        White = 31,
        Table = 32,
        Row = 33,
        Column = 34,
        Separator = 35
    };

    Decorator();
    virtual ~Decorator();

    /// Asks for `type` from here on; does nothing here.
    virtual void setDecoration(DecorationType type);
    /// The same, naming the stream that the decoration is meant for; null means none.
    virtual void setDecoration(DecorationType type, PutStream* stream);

    /// The token that names `type` in text; token 1153 for a type outside 0 to 35.
    static stringtoken toToken(DecorationType type);

private:
    static const stringtoken m_toToken[36];
};

} // namespace utility
