#pragma once

#include <cstddef>
#include <memory>
#include <new>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace viewshed
{

/// An array of numbers, uninitialized, in huge pages of memory where the system has them: the page faults of
/// small pages cost more time than reading the numbers from a file.
template <class Number> class HugeArray
{
public:
    /// Throws std::bad_alloc.
    explicit HugeArray(std::size_t size)
        : m_size(size)
        , m_numbers(static_cast<Number *>(::operator new[](size * sizeof(Number), page)))
    {
#ifdef MADV_HUGEPAGE
        if (size * sizeof(Number) >= static_cast<std::size_t>(page))
            madvise(m_numbers.get(), size * sizeof(Number), MADV_HUGEPAGE); // only advice: failure does no harm
#endif
    }

    std::size_t size() const
    {
        return m_size;
    }
    Number *data()
    {
        return m_numbers.get();
    }
    const Number *data() const
    {
        return m_numbers.get();
    }

private:
    static constexpr std::align_val_t page{std::size_t(1) << 21};

    struct Release
    {
        void operator()(void *numbers) const { ::operator delete[](numbers, page); }
    };

    std::size_t m_size;
    std::unique_ptr<Number[], Release> m_numbers;
};

} // namespace viewshed
