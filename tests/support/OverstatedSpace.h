#pragma once

namespace test {

/// A buffer that reports more space than its storage has, as a stream does that flushes while it is written to.
template<typename Base>
class OverstatedSpace : public Base {
public:
    using Base::Base;
    int WriteRemaining() const override {
        return 1000;
    }
};

} // namespace test
