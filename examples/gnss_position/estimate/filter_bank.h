// The three forms of the filter, side by side on the same steps.
#ifndef GNSS_POSITION_ESTIMATE_FILTER_BANK_H
#define GNSS_POSITION_ESTIMATE_FILTER_BANK_H

#include <array>
#include <memory>

#include "estimate/filter_form.h"

namespace gnss {

class FilterBank {
 public:
  static constexpr std::size_t kForms = 3;

  FilterBank();

  void Start(const RegularMatrix& x, const SymmetricMatrix& covariance);
  void Predict(const Transition& transition);
  void Update(const Measurement& measurement);

  const FilterForm& form(std::size_t k) const { return *forms_[k]; }
  /// Time that form k has spent in Predict and Update, seconds.
  double seconds(std::size_t k) const { return seconds_[k]; }
  /// Greatest difference between the positions of any two forms, in any coordinate, metres.
  double Disagreement() const;

 private:
  /// Runs the step on each form and adds the time it takes.
  template <typename Step>
  void ForEach(Step step);

  std::array<std::unique_ptr<FilterForm>, kForms> forms_;
  std::array<double, kForms> seconds_{};
};

}  // namespace gnss

#endif
