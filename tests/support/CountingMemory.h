#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <vector>

#include "fw_Container.h"
#include "fw_Memory.h"

namespace test {

/// The process's memory object while it exists. Counts allocations, and makes them fail on request.
///
///     test::CountingMemory memory;
///     delete new utility::BufferStream(8);
///     EXPECT_EQ(memory.outstanding(), 0u);
class CountingMemory : public framework::Memory {
public:
    CountingMemory() : m_previous(framework::Container::m_pMemory) {
        framework::Container::m_pMemory = this;
    }
    CountingMemory(const CountingMemory&) = delete;
    CountingMemory& operator=(const CountingMemory&) = delete;
    ~CountingMemory() override {
        framework::Container::m_pMemory = m_previous;
        for (void* piece : m_pieces)
            std::free(piece);
    }

    void* allocate(unsigned long size) override {
        m_requests.push_back(size);
        if (m_requests.size() >= m_refuseFrom && m_requests.size() < m_refuseBefore)
            return nullptr;
        void* piece = std::malloc(size);
        if (piece != nullptr)
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

    /// Makes every allocation fail from now on.
    void refuseAll() {
        m_refuseFrom = 0;
        m_refuseBefore = static_cast<std::size_t>(-1);
    }
    /// Makes only the `nth` allocation from now on fail, counted from 1.
    void refuse(std::size_t nth) {
        m_refuseFrom = m_requests.size() + nth;
        m_refuseBefore = m_refuseFrom + 1;
    }

    /// The sizes requested, including those of failed allocations.
    const std::vector<unsigned long>& requests() const {
        return m_requests;
    }
    /// The number of pieces allocated and not released.
    std::size_t outstanding() const {
        return m_pieces.size();
    }
    /// Whether `piece` was allocated here and is not released.
    bool holds(const void* piece) const {
        return std::find(m_pieces.begin(), m_pieces.end(), piece) != m_pieces.end();
    }
    /// The pieces released here that were not allocated here; they are not freed.
    const std::vector<const void*>& foreign() const {
        return m_foreign;
    }

private:
    framework::Memory* m_previous;
    std::vector<void*> m_pieces;
    std::vector<unsigned long> m_requests;
    std::vector<const void*> m_foreign;
    std::size_t m_refuseFrom = static_cast<std::size_t>(-1);
    std::size_t m_refuseBefore = static_cast<std::size_t>(-1);
};

} // namespace test
