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
/// In the base class, every operation that writes or reads the item does nothing and returns false. Derived classes
/// override at least `getName` and `getNameString`. One thread at a time.
///
///     class Volume : public framework::Item { ... };
class VXFW_EXPORT Item : public virtual Entity {
public:
    /// Creates an item without an error and without a memory object.
    Item();
    ~Item() override;

    stringtoken getName() const override;
    const char* getNameString() const override;
    void information(utility::PutStream& out, int indent, bool flag) const override;
    Entity* clone() const override;
    /// Returns the access that the item allows, encoded as derived classes define; 0 in the base class.
    virtual unsigned int getAccess() const;
    /// Returns true if the item differs from its stored form; false in the base class.
    virtual bool isChanged() const;
    /// Marks the item as changed; does nothing in the base class.
    virtual void setChanged();
    /// Marks the item as not changed; does nothing in the base class.
    virtual void clearChanged();
    /// Discards the changes to the item; does nothing in the base class.
    virtual void discardChanged();
    /// Writes the item to `out`. Returns false if it cannot be written.
    virtual bool toStream(utility::PutStream& out) const;
    /// Writes the item to the file `path`. Returns false if it cannot be written.
    virtual bool toFile(const char* path) const;
    /// Reads the item from `in`. Returns false if it cannot be read.
    virtual bool fromStream(utility::GetStream& in);
    /// Reads the item from the file `path`. Returns false if it cannot be read.
    virtual bool fromFile(const char* path);
    /// Reads the item from `document`. Returns false if it cannot be read.
    virtual bool fromXML(utility::XMLDocument& document);
    bool inError() const override;
    const char* ErrorMessage() const override;
    void ClearError() override;
    void setResources() override;
    void setError(const char* format, ...) override VXFW_PRINTF(2, 3);
};

} // namespace framework
