#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace ora {

// Memory that is given back all at once. What is made here never runs a destructor, so that a tree
// of any depth goes away without recursion.
class Arena {
public:
    Arena() = default;
    Arena(Arena&&) = default;
    Arena& operator=(Arena&&) = default;

    template<class T, class... Args>
    T* make(Args&&... args) {
        static_assert(std::is_trivially_destructible_v<T>);
        return new (allocate(sizeof(T), alignof(T))) T{std::forward<Args>(args)...};
    }

    template<class T>
    std::span<T> list(const std::vector<T>& items) {
        static_assert(std::is_trivially_copyable_v<T>);
        if (items.empty())
            return {};
        T* const first = static_cast<T*>(allocate(items.size() * sizeof(T), alignof(T)));
        std::memcpy(static_cast<void*>(first), items.data(), items.size() * sizeof(T));
        return {first, items.size()};
    }

    std::string_view text(std::string_view source) {
        if (source.empty())
            return {};
        char* const first = static_cast<char*>(allocate(source.size(), 1));
        std::memcpy(first, source.data(), source.size());
        return {first, source.size()};
    }

private:
    static constexpr std::size_t BlockSize = 16 * 1024;

    void* allocate(std::size_t size, std::size_t alignment) {
        const std::size_t start = (m_used + alignment - 1) & ~(alignment - 1);
        if (start + size > m_capacity)
            return allocateInNewBlock(size);
        m_used = start + size;
        return m_blocks.back().get() + start;
    }

    void* allocateInNewBlock(std::size_t size) {
        m_capacity = size > BlockSize ? size : BlockSize;
        m_blocks.push_back(std::make_unique_for_overwrite<std::byte[]>(m_capacity));
        m_used = size;
        return m_blocks.back().get();
    }

    std::vector<std::unique_ptr<std::byte[]>> m_blocks;
    std::size_t m_capacity = 0;
    std::size_t m_used = 0;
};

} // namespace ora
