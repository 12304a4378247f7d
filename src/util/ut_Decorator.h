#pragma once

#include "ut_Export.h"

#include "fw_StringToken.h"

namespace utility {

class PutStream;

/// An interface for marking up output independently of the kind of stream it is written to.
///
/// The operations of this class do nothing; streams that can render decorations override them. No operation fails.
///
///     stream.setDecoration(utility::Decorator::Heading);
///     stream.PutS("Ports\n");
///     stream.setDecoration(utility::Decorator::Normal);
class VXUT_EXPORT Decorator {
public:
    /// The kinds of decoration; `toToken` names them.
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

    /// Creates an object without state.
    Decorator();
    virtual ~Decorator();

    /// Decorates the following output as `type`; does nothing in this class.
    virtual void setDecoration(DecorationType type);
    /// Decorates the following output of `stream` as `type`; `stream` may be null. Does nothing in this class.
    virtual void setDecoration(DecorationType type, PutStream* stream);

    /// Returns the token of the name of `type`, or 1153 ("Undefined") if `type` is out of range.
    static stringtoken toToken(DecorationType type);

private:
    static const stringtoken m_toToken[36];
};

} // namespace utility
