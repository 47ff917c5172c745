#pragma once

#include <stdexcept>

namespace viewshed
{

/// Why a run cannot go on: one English sentence for the user, with its full stop. Only main() catches it.
class Problem : public std::runtime_error
{
    using std::runtime_error::runtime_error;
};

} // namespace viewshed
