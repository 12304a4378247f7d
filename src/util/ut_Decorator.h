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
    /// What to mark up as, named as its token is in text.
    enum DecorationType : int {
        Normal = 0,
        Emphasis = 1,
        Strong = 2,
        Underlined = 3,
        Inverse = 4,
        Heading = 5,
        Subheading = 6,
        Title = 7,
        Subtitle = 8,
        Paragraph = 9,
        Quotation = 10,
        ListItem = 11,
        TableHeading = 12,
        TableCell = 13,
        TableTotal = 14,
        Separator = 15,
        Label = 16,
        Value = 17,
        Unit = 18,
        Link = 19,
        Command = 20,
        Option = 21,
        Prompt = 22,
        Selection = 23,
        Disabled = 24,
        Comment = 25,
        Success = 26,
        Warning = 27,
        Failure = 28,
        Critical = 29,
        Red = 30,
        Green = 31,
        Yellow = 32,
        Blue = 33,
        Magenta = 34,
        Cyan = 35
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
