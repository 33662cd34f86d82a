#include "estimate/filter_bank.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>

#include "estimate/covariance_filter.h"
#include "estimate/information_filter.h"
#include "estimate/ud_filter.h"

namespace gnss {

FilterBank::FilterBank() {
  forms_[0] = std::make_unique<CovarianceFilter>();
  forms_[1] = std::make_unique<UDFilter>();
  forms_[2] = std::make_unique<InformationFilter>();
}

template <typename Step>
void FilterBank::ForEach(Step step) {
  for (std::size_t k = 0; k < kForms; ++k) {
    const auto begin = std::chrono::steady_clock::now();
    step(*forms_[k]);
    seconds_[k] += std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  }
}

void FilterBank::Start(const RegularMatrix& x, const SymmetricMatrix& covariance) {
  for (const auto& form : forms_) form->Start(x, covariance);
}

void FilterBank::Predict(const Transition& transition) {
  ForEach([&](FilterForm& form) { form.Predict(transition); });
}

void FilterBank::Update(const Measurement& measurement) {
  ForEach([&](FilterForm& form) { form.Update(measurement); });
}

double FilterBank::Disagreement() const {
  double worst = 0.0;
  const RegularMatrix first = forms_[0]->Estimate();
  for (std::size_t k = 1; k < kForms; ++k) {
    const RegularMatrix other = forms_[k]->Estimate();
    for (Matrix::size_type axis = 0; axis < kClock; axis += 2) {
      const double difference = std::fabs(other(axis) - first(axis));
      // A value that is no number counts as the greatest difference of all.
      worst = difference <= std::numeric_limits<double>::max() ? std::max(worst, difference) : difference;
      if (!std::isfinite(worst)) return std::numeric_limits<double>::infinity();
    }
  }
  return worst;
}

}  // namespace gnss
