#include "fw_Item.h"

namespace framework {

Item::Item() = default;

Item::~Item() = default;

stringtoken Item::getName() const {
    return Entity::getName();
}

const char* Item::getNameString() const {
    return Entity::getNameString();
}

void Item::information(utility::PutStream& out, int indent, bool flag) const {
    Entity::information(out, indent, flag);
}

Entity* Item::clone() const {
    return Entity::clone();
}

unsigned int Item::getAccess() const {
    return 0;
}

bool Item::isChanged() const {
    return false;
}

void Item::setChanged() {}

void Item::clearChanged() {}

void Item::discardChanged() {}

bool Item::toStream(utility::PutStream& /*out*/) const {
    return false;
}

bool Item::toFile(const char* /*path*/) const {
    return false;
}

bool Item::fromStream(utility::GetStream& /*in*/) {
    return false;
}

bool Item::fromFile(const char* /*path*/) {
    return false;
}

bool Item::fromXML(utility::XMLDocument& /*document*/) {
    return false;
}

bool Item::inError() const {
    return Entity::inError();
}

const char* Item::ErrorMessage() const {
    return Entity::ErrorMessage();
}

void Item::ClearError() {
    Entity::ClearError();
}

void Item::setResources() {
    Entity::setResources();
}

void Item::setError(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    setErrorFrom(format, arguments);
    va_end(arguments);
}

} // namespace framework
