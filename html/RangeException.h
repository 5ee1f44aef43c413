#pragma once

#include <stdexcept>
#include <string>

// Raised when a link computation indexes past the end of a string or list (a ".." above the
// root, a URL shorter than the site base). The page analysis catches it and drops that page.
class RangeException : public std::out_of_range {
public:
    explicit RangeException(const std::string& what) : std::out_of_range(what) {}
};
