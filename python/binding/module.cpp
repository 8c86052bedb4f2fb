// The extension module gxshape._gxshape.  It is private: the package around it checks arguments, gives the
// answers their classes and documents them.  What is here takes arrays that are right already.
#include "binding.h"

PYBIND11_MODULE(_gxshape, module) {
  module.doc() = "The binding of gxshape; private, see the package gxshape.";
  bindErrors(module);
  bindShape(module);
  bindShapeGauges(module);
  bindPlaceGauges(module);
  bindCompareGauges(module);
  bindFormGauges(module);
  bindOverlay(module);
  bindBatchMeasures(module);
  bindBatchCompare(module);
  bindBatchPlaces(module);
  bindBatchShapes(module);
  bindFiles(module);
}
