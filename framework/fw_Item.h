#pragma once

#include "fw_Entity.h"

namespace utility {
class GetStream;
class PutStream;
class XMLDocument;
} // namespace utility

namespace framework {

/// An entity that can be written to and read from streams and files.
///
/// In the base class each stream operation does nothing and returns false. Derived classes override at least `getName`
/// and `getNameString`. One thread at a time.
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
    /// Returns the access that the item allows; 0 in the base class.
    virtual unsigned int getAccess() const;
    /// Returns true if the item differs from its stored form; false in the base class.
    virtual bool isChanged() const;
    virtual void setChanged();
    virtual void clearChanged();
    virtual void discardChanged();
    /// Writes the item. Returns false if it cannot be written.
    virtual bool toStream(utility::PutStream& out) const;
    virtual bool toFile(const char* path) const;
    /// Reads the item. Returns false if it cannot be read.
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
