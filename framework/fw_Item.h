#pragma once

#include "fw_Entity.h"

namespace utility {
class GetStream;
class PutStream;
class XMLDocument;
} // namespace utility

namespace framework {

/// An entity that can be kept: written to and read from streams and files.
///
/// A plain item keeps nothing: each of its stream operations changes nothing and answers false, and it is never
/// changed. Derived classes override `getName` and `getNameString` at least. One thread at a time.
///
///     class Volume : public framework::Item { ... };
class VXFW_EXPORT Item : public virtual Entity {
public:
    Item();
    ~Item() override;

    stringtoken getName() const override;
    const char* getNameString() const override;
    void information(utility::PutStream& out, int indent, bool flag) const override;
    Entity* clone() const override;
    /// The access that the item allows; 0 for a plain item.
    virtual unsigned int getAccess() const;
    /// Whether the item differs from what is kept; false for a plain item.
    virtual bool isChanged() const;
    virtual void setChanged();
    virtual void clearChanged();
    virtual void discardChanged();
    /// Writes the item; false when it cannot be written.
    virtual bool toStream(utility::PutStream& out) const;
    virtual bool toFile(const char* path) const;
    /// Reads the item; false when it cannot be read.
    virtual bool fromStream(utility::GetStream& in);
    virtual bool fromFile(const char* path);
    virtual bool fromXML(utility::XMLDocument& document);
    bool inError() const override;
    const char* ErrorMessage() const override;
    void ClearError() override;
    void setResources() override;
    void setError(const char* format, ...) override VXFW_PRINTF(2, 3);
};

} // namespace framework
