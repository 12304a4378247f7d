#pragma once

namespace test {

/// A buffer that counts the calls of its position operations, which streams that page or flush override.
template<typename Base>
class CountedPositions : public Base {
public:
    using Base::Base;
    int WriteRemaining() const override {
        ++remaining;
        return Base::WriteRemaining();
    }
    int ReadAvailable() const override {
        ++available;
        return Base::ReadAvailable();
    }
    void WriteAdvance(int n) override {
        ++written;
        Base::WriteAdvance(n);
    }
    void ReadAdvance(int n) override {
        ++read;
        Base::ReadAdvance(n);
    }
    int calls() const {
        return remaining + available + written + read;
    }

    mutable int remaining = 0;
    mutable int available = 0;
    int written = 0;
    int read = 0;
};

} // namespace test
