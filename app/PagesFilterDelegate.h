#pragma once

// Who the filter sheet hands the chosen filter to: the application delegate.
class PagesFilterDelegate {
public:
    virtual ~PagesFilterDelegate() = default;
    virtual void doFilterNone() = 0;
    virtual void doFilter404All() = 0;
    virtual void doFilter404OnlyHTML() = 0;
    virtual void doFilter404NotHTML() = 0;
    virtual void doFilterNoIndex() = 0;
    virtual void doFilterCanonical() = 0;
};
