// The out-of-line parts of the exceptions.  They are not registered with archives: they tell of one call
// in one process, and nobody keeps them.
#include <overlay/limits.h>

using Message = std::basic_string<wchar_t>;

gxLimitExceeded::gxLimitExceeded(const Message& message) : gx_ConcreteException(message) {}
gxLimitExceeded::gxLimitExceeded(const gxLimitExceeded&) noexcept = default;
gxLimitExceeded& gxLimitExceeded::operator=(const gxLimitExceeded&) noexcept = default;
gxLimitExceeded::~gxLimitExceeded() = default;
