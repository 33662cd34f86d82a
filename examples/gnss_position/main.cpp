// Positions from GPS code ranges: an example of filtering and least squares with Quorvel. See kUsage in options.cpp.
//
// Where to look:
//   estimate/epoch_solver.cpp        one epoch: robust start (L1Regression), least squares (ATPA, ATB,
//                                    InverseByCholesky), dilutions of precision (ATA, AQAT, denu_dxyz)
//   estimate/covariance_filter.cpp   the Kalman filter on its covariance (AQAT)
//   estimate/ud_filter.cpp           the same on the factors of the covariance (UDFactor, UDTimeUpdate,
//                                    UDMeasurementUpdate)
//   estimate/information_filter.cpp  the same on the root of the information (Householder_Reduction)
//   estimate/motion_model.cpp        transition and process noise (Phi_PV, Q_PV)
//   model/, read/, simulate/         satellites and atmosphere; RINEX files; a simulated drive
//   report/                          summary, tables (PrintMFile), pictures
#include <iostream>
#include <string>
#include <vector>

#include "program.h"

int main(int argc, char** argv) {
  return gnss::RunProgram(std::vector<std::string>(argv + 1, argv + argc), std::cout, std::cerr);
}
