// The out-of-line parts of the library's exceptions.
#include <cntr/contourdefs.h>

using Message = std::basic_string<wchar_t>;

gxContourDefs::Errors::Errors(const Message& message) : gxExceptionWithString(message.c_str()) {}
gxContourDefs::Errors::Errors(const Errors&) noexcept = default;
gxContourDefs::Errors& gxContourDefs::Errors::operator=(const Errors&) noexcept = default;
// Its destructor stands in ch_core/registration.cpp, which says why.

gxContourDefs::EmptyContour::EmptyContour(const Message& message) : gx_ConcreteException(message) {}
gxContourDefs::EmptyContour::EmptyContour(const EmptyContour&) noexcept = default;
gxContourDefs::EmptyContour& gxContourDefs::EmptyContour::operator=(const EmptyContour&) noexcept =
    default;
gxContourDefs::EmptyContour::~EmptyContour() = default;

gxContourDefs::EmptyRegionSet::EmptyRegionSet(const Message& message) : gx_ConcreteException(message) {}
gxContourDefs::EmptyRegionSet::EmptyRegionSet(const EmptyRegionSet&) noexcept = default;
gxContourDefs::EmptyRegionSet& gxContourDefs::EmptyRegionSet::operator=(const EmptyRegionSet&) noexcept =
    default;
gxContourDefs::EmptyRegionSet::~EmptyRegionSet() = default;

gxContourDefs::BadParams::BadParams(const Message& message) : gx_ConcreteException(message) {}
gxContourDefs::BadParams::BadParams(const BadParams&) noexcept = default;
gxContourDefs::BadParams& gxContourDefs::BadParams::operator=(const BadParams&) noexcept = default;
gxContourDefs::BadParams::~BadParams() = default;

gxContourDefs::RegionCannotBeSetOpen::RegionCannotBeSetOpen(const Message& message)
    : gx_ConcreteException(message) {}
gxContourDefs::RegionCannotBeSetOpen::RegionCannotBeSetOpen(const RegionCannotBeSetOpen&) noexcept =
    default;
gxContourDefs::RegionCannotBeSetOpen& gxContourDefs::RegionCannotBeSetOpen::operator=(
    const RegionCannotBeSetOpen&) noexcept = default;
gxContourDefs::RegionCannotBeSetOpen::~RegionCannotBeSetOpen() = default;
