// The registration of the library's persistent classes, in the order that their archives rely on.
// One file holds all ten: the order of static objects is that of the text within a file and nobody's
// between files.
//
// A static library gives a program only the files that something refers to, and nothing refers to a
// registration: programs that were linked so refused every archive.  So the destructors of the two roots of
// these classes stand here, which whoever has a contour, a region, a set or an exception of them refers to.
#include <ch_core/cntrtmpl.h>
#include <cntr/contour.h>
#include <cntr/contourdefs.h>
#include <cntr/region.h>
#include <cntr/regionst.h>
#include <velstd/registry.h>

gx_Instantiator gxContourDefs::BadParams::sExemplar(typeid(gxContourDefs::BadParams), &BadParams::make);
gx_Instantiator gxContourDefs::EmptyContour::sExemplar(typeid(gxContourDefs::EmptyContour),
                                                       &EmptyContour::make);
gx_Instantiator gxContourDefs::EmptyRegionSet::sExemplar(typeid(gxContourDefs::EmptyRegionSet),
                                                         &EmptyRegionSet::make);
gx_Instantiator gxContourDefs::RegionCannotBeSetOpen::sExemplar(
    typeid(gxContourDefs::RegionCannotBeSetOpen), &RegionCannotBeSetOpen::make);
gx_Instantiator gxContour::sExemplar(typeid(gxContour), &gxContour::make);
gx_Instantiator gxRegion::sExemplar(typeid(gxRegion), &gxRegion::make);
gx_Instantiator gxRegionSet::sExemplar(typeid(gxRegionSet), &gxRegionSet::make);
template <>
gx_Instantiator gxContourT<gxEdgelet>::sExemplar(typeid(gxContourT<gxEdgelet>),
                                                 &gxContourT<gxEdgelet>::make);
template <>
gx_Instantiator gxRegionSetT<gxEdgelet>::sExemplar(typeid(gxRegionSetT<gxEdgelet>),
                                                   &gxRegionSetT<gxEdgelet>::make);
template <>
gx_Instantiator gxRegionT<gxEdgelet>::sExemplar(typeid(gxRegionT<gxEdgelet>),
                                                &gxRegionT<gxEdgelet>::make);

gxContour::~gxContour() = default;
gxContourDefs::Errors::~Errors() = default;
