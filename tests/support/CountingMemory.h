#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <vector>

#include "fw_Container.h"
#include "fw_Memory.h"

namespace test {

/// The process's memory object for its life; it counts what is taken, and refuses on request.
///
///     test::CountingMemory memory;
///     delete new utility::BufferStream(8);
///     EXPECT_EQ(memory.outstanding(), 0u);
class CountingMemory : public framework::Memory {
public:
    CountingMemory() : m_former(framework::Container::m_pMemory) {
        framework::Container::m_pMemory = this;
    }
    CountingMemory(const CountingMemory&) = delete;
    CountingMemory& operator=(const CountingMemory&) = delete;
    ~CountingMemory() override {
        framework::Container::m_pMemory = m_former;
        for (void* piece : m_pieces)
            std::free(piece);
    }

    void* allocate(unsigned long size) override {
        m_requests.push_back(size);
        if (m_requests.size() >= m_refuseFrom && m_requests.size() < m_refuseBefore)
            return nullptr;
        void* piece = std::malloc(size);
        if (piece)
            m_pieces.push_back(piece);
        return piece;
    }
    void release(const void* piece) override {
        const auto found = std::find(m_pieces.begin(), m_pieces.end(), piece);
        if (found == m_pieces.end()) {
            m_foreign.push_back(piece);
            return;
        }
        std::free(*found);
        m_pieces.erase(found);
    }

    /// From now on, refuses what is asked for.
    void refuseAll() {
        m_refuseFrom = 0;
        m_refuseBefore = static_cast<std::size_t>(-1);
    }
    /// From now on, refuses the `nth` request, counted from 1, and no other.
    void refuse(std::size_t nth) {
        m_refuseFrom = m_requests.size() + nth;
        m_refuseBefore = m_refuseFrom + 1;
    }

    /// The sizes asked for, refused ones included.
    const std::vector<unsigned long>& requests() const {
        return m_requests;
    }
    /// How many pieces are taken and not given back.
    std::size_t outstanding() const {
        return m_pieces.size();
    }
    bool holds(const void* piece) const {
        return std::find(m_pieces.begin(), m_pieces.end(), piece) != m_pieces.end();
    }
    /// What was given back here though it was not taken here; none of it is freed.
    const std::vector<const void*>& foreign() const {
        return m_foreign;
    }

private:
    framework::Memory* m_former;
    std::vector<void*> m_pieces;
    std::vector<unsigned long> m_requests;
    std::vector<const void*> m_foreign;
    std::size_t m_refuseFrom = static_cast<std::size_t>(-1);
    std::size_t m_refuseBefore = static_cast<std::size_t>(-1);
};

} // namespace test
