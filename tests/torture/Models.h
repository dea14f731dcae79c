#pragma once
// Objects whose every answer a simple model foretells.

#include <memory>
#include <string_view>

#include "torture/Random.h"

namespace zeq::torture {

class Model {
 public:
  Model() = default;
  virtual ~Model() = default;
  Model(const Model&) = delete;
  Model& operator=(const Model&) = delete;

  /// Does one random thing to the object and to the model, and compares what both show. Throws Violation.
  void step() {
    act();
    compare();
  }

 protected:
  virtual void act() = 0;
  virtual void compare() = 0;
};

[[nodiscard]] std::unique_ptr<Model> makeCollectionModel(Random& random);
[[nodiscard]] std::unique_ptr<Model> makeCounterModel(Random& random);
[[nodiscard]] std::unique_ptr<Model> makeDriveModel(Random& random);
[[nodiscard]] std::unique_ptr<Model> makeKeyMapModel(Random& random);
[[nodiscard]] std::unique_ptr<Model> makeSettingsModel(Random& random);
[[nodiscard]] std::unique_ptr<Model> makeSplitterModel(Random& random);

/// A new object of any of these kinds, with its model.
[[nodiscard]] inline std::unique_ptr<Model> makeModel(Random& random) {
  static const std::vector<std::unique_ptr<Model> (*)(Random&)> kinds{makeCollectionModel, makeCounterModel,
                                                                      makeDriveModel,      makeKeyMapModel,
                                                                      makeSettingsModel,   makeSplitterModel};
  return random.pick(kinds)(random);
}

}  // namespace zeq::torture
