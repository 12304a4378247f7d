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
        Normal = 0,        ///< plain text
        Emphasis = 1,      ///< text to stress
        Strong = 2,        ///< text to stress strongly
        Underlined = 3,    ///< underlined text
        Inverse = 4,       ///< foreground and background exchanged
        Heading = 5,       ///< heading of a section
        Subheading = 6,    ///< heading of a subsection
        Title = 7,         ///< title of a document
        Subtitle = 8,      ///< subtitle of a document
        Paragraph = 9,     ///< paragraph of text
        Quotation = 10,    ///< quoted text
        ListItem = 11,     ///< item of a list
        TableHeading = 12, ///< heading of a column
        TableCell = 13,    ///< cell of a table
        TableTotal = 14,   ///< total of a column
        Separator = 15,    ///< separator between parts
        Label = 16,        ///< name of a value
        Value = 17,        ///< value
        Unit = 18,         ///< unit of a value
        Link = 19,         ///< reference to something else
        Command = 20,      ///< command to enter
        Option = 21,       ///< option of a command
        Prompt = 22,       ///< request for input
        Selection = 23,    ///< selected item
        Disabled = 24,     ///< item that cannot be used
        Comment = 25,      ///< remark
        Success = 26,      ///< result of an operation that succeeded
        Warning = 27,      ///< warning
        Failure = 28,      ///< result of an operation that failed
        Critical = 29,     ///< failure that needs action at once
        Red = 30,          ///< red text
        Green = 31,        ///< green text
        Yellow = 32,       ///< yellow text
        Blue = 33,         ///< blue text
        Magenta = 34,      ///< magenta text
        Cyan = 35          ///< cyan text
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
