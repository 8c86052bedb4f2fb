// Scene 1: countries with holes.
//
//  1. Each country is a region; its holes are regions of their own.
//  2. The table gives length, area and centre of mass of the outline alone and with the holes taken out.
//  3. Lesotho is the hole of South Africa, so the two areas must add up to that of the outline.
//  4. The moments with the hole taken out: a record of negative area is taken out of a positive one.
//  5. Two places tell what a hole means to containment and distance.
//  6. The picture: y points up, as on a map.

#include "readers.h"
#include "scenes.h"
#include "shapes.h"
#include "sketch.h"

#include <cntr/shapestat.h>
#include <veldispc/svg_tablet.h>

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

struct Country {
  std::string name;
  gxRegion region;
};

std::vector<Country> readCountries(const std::filesystem::path& data) {
  std::vector<Country> countries;
  for (const Outline& outline : readOutlines(data / "countries" / "countries.jsonl")) {
    std::vector<gxRegion::HoleHandle> holes;
    for (const std::vector<gxVector<2>>& hole : outline.holes) holes.emplace_back(new gxRegion(hole));
    countries.push_back({outline.name, gxRegion(outline.points)});
    countries.back().region.holes(holes);
  }
  return countries;
}

const gxRegion& countryOf(const std::vector<Country>& countries, const std::string& name) {
  for (const Country& country : countries) {
    if (country.name == name) return country.region;
  }
  throw std::runtime_error("no country is called " + name);
}

void printMeasures(const std::vector<Country>& countries) {
  std::printf("\nUnits: degrees of longitude (x) and latitude (y), taken as a plane.\n\n");
  std::printf(
      "                                          holes filled                 holes taken out\n");
  std::printf(
      "              points  holes   length      area     centre of mass       area     centre of "
      "mass\n");
  std::printf(
      "                                                      x        y                    x        "
      "y\n");
  for (const Country& country : countries) {
    const gxRegion& region = country.region;
    const gxVector<2> filled = region.centerOfMass(false);
    const gxVector<2> centre = region.centerOfMass(true);
    std::printf("%-12s  %6zu  %5zu  %7.3f  %8.4f  %8.4f %8.4f   %8.4f  %8.4f %8.4f\n",
                country.name.c_str(), region.points().size(), region.holes().size(), region.length(),
                region.area(false), filled.x(), filled.y(), region.area(true), centre.x(), centre.y());
  }
}

// The moments with the outline's area positive, whatever its direction.
gx_InertiaData materialOf(const gxRegion& outline, double sign) {
  return {sign * outline.area(false), outline.centerOfMass(false), outline.inertiaMatrix(false)};
}

void printSouthAfrica(const std::vector<Country>& countries) {
  const gxRegion& southAfrica = countryOf(countries, "South Africa");
  const gxRegion& lesotho = countryOf(countries, "Lesotho");
  std::printf("\nSouth Africa %.4f + Lesotho %.4f = %.4f; the outline alone: %.4f square degrees\n",
              southAfrica.area(true), lesotho.area(true), southAfrica.area(true) + lesotho.area(true),
              southAfrica.area(false));

  gx_InertiaData moments = materialOf(southAfrica, 1.0);
  for (const gxRegion::HoleHandle& hole : southAfrica.holes())
    moments = moments + materialOf(*hole, -1.0);
  const gxEllipse::gxEllipseGeom filled = principalEllipse(southAfrica).geom();
  const gxEllipse::gxEllipseGeom holed = gf_EllipseFromInertiaData(moments).geom();
  std::printf(
      "principal axes: %.4f and %.4f at %.2f deg; with the hole taken out %.4f and %.4f at %.2f deg\n",
      filled.radii.x(), filled.radii.y(), filled.rotation.toDouble() * kDegrees, holed.radii.x(),
      holed.radii.y(), holed.rotation.toDouble() * kDegrees);

  struct Place {
    const char* name;
    gxVector<2> at;
  };
  for (const Place& place : {Place{"Pretoria", {28.188, -25.746}}, Place{"Maseru", {27.483, -29.317}}}) {
    std::printf("%-9s (%.3f, %.3f): in the outline %s, in the country %s, to the nearest border %.3f\n",
                place.name, place.at.x(), place.at.y(),
                southAfrica.inside(place.at, false) ? "yes" : "no",
                southAfrica.inside(place.at, true) ? "yes" : "no",
                southAfrica.distToPoint(place.at, false, true, false));
  }
}

void drawCountry(gxSvgTablet& tablet, const Country& country, const gxRect& panel) {
  const gxRegion& region = country.region;
  const gxXform<2> placement = fitInto(region.encloseRect(gxXform<2>::I), panel, true);
  PanelTablet map(tablet, placement);
  tablet.strokeWidth(1.6);
  region.draw(map, palette::kOutline, gxUITablet::eOverlayLayer);
  for (const gxRegion::HoleHandle& hole : region.holes()) {
    hole->draw(map, palette::kHole, gxUITablet::eOverlayLayer);
  }
  tablet.strokeWidth(2.0);
  drawCross(tablet, placement * region.centerOfMass(false), 9.0, palette::kUprightBox);
  drawCross(tablet, placement * region.centerOfMass(true), 6.0, palette::kCentre);
  const gxVector<2> foot = panel.corner() - gxVector<2>(panel.size().x() / 2.0, -22.0);
  tablet.drawText({foot.x(), foot.y()}, country.name, palette::kLabel, gxUITablet::eOverlayLayer, 17.0);
}

void drawCountries(const std::vector<Country>& countries, const std::filesystem::path& path) {
  gxSvgTablet tablet(gxRect({0.0, 0.0}, {1240.0, 700.0}), 1240.0, gxSvgTablet::eYDown, 10.0);
  tablet.background(palette::kPaper);
  tablet.title("Countries with holes");
  const gxRect panels[] = {gxRect({10.0, 10.0}, {690.0, 580.0}), gxRect({730.0, 10.0}, {230.0, 240.0}),
                           gxRect({990.0, 10.0}, {240.0, 240.0}),
                           gxRect({750.0, 320.0}, {460.0, 270.0})};
  for (std::size_t i = 0; i < std::min(countries.size(), std::size(panels)); ++i) {
    drawCountry(tablet, countries[i], panels[i]);
  }
  struct Entry {
    const char* text;
    gxColor colour;
    double at;
    double width;
    bool isCross;
  };
  const Entry entries[] = {{"outline", palette::kOutline, 40.0, 60.0, false},
                           {"hole", palette::kHole, 190.0, 40.0, false},
                           {"centre of mass, holes filled", palette::kUprightBox, 310.0, 215.0, true},
                           {"centre of mass, holes taken out", palette::kCentre, 600.0, 235.0, true}};
  for (const Entry& entry : entries) {
    if (entry.isCross) {
      drawCross(tablet, {entry.at + 20.0, 675.0}, 8.0, entry.colour);
    } else {
      drawLine(tablet, {entry.at, 675.0}, {entry.at + 30.0, 675.0}, entry.colour);
    }
    tablet.drawText({entry.at + 40.0 + entry.width / 2.0, 675.0}, entry.text, palette::kLabel,
                    gxUITablet::eOverlayLayer, 15.0);
  }
  tablet.save(path);
  std::printf("\nDrawn: %s\n", path.c_str());
}

}  // namespace

void showCountries(const std::filesystem::path& data, const std::filesystem::path& out) {
  std::printf("\n== 1. Countries\n");
  const std::vector<Country> countries = readCountries(data);
  printMeasures(countries);
  printSouthAfrica(countries);
  drawCountries(countries, out / "countries.svg");
}
