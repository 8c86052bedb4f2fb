// The out-of-line parts of the picture exceptions.
#include <velip/pel.h>

gxPel::Errors::Errors() noexcept = default;
gxPel::Errors::Errors(const Errors&) noexcept = default;
gxPel::Errors& gxPel::Errors::operator=(const Errors&) noexcept = default;
gxPel::Errors::~Errors() = default;

gxPel::BadWindow::BadWindow() noexcept = default;
gxPel::BadWindow::BadWindow(const BadWindow&) noexcept = default;
gxPel::BadWindow& gxPel::BadWindow::operator=(const BadWindow&) noexcept = default;
gxPel::BadWindow::~BadWindow() = default;
