#include "ui/dialog_templates.h"

#include <gtest/gtest.h>

namespace gantry::test {
namespace {

using namespace platform;

bool IsWithin(const DialogPlace& inner, const DialogPlace& outer) {
  return inner.left >= outer.left && inner.top >= outer.top &&
         inner.left + inner.width <= outer.left + outer.width &&
         inner.top + inner.height <= outer.top + outer.height;
}

bool Overlap(const DialogPlace& a, const DialogPlace& b) {
  return a.left < b.left + b.width && b.left < a.left + a.width && a.top < b.top + b.height &&
         b.top < a.top + a.height;
}

TEST(DialogTemplates, GiveEachControlAPlaceOfItsOwnWithinTheDialogOrItsGroup) {
  for (const auto* shape : {&kConfigureTemplate, &kAddPropertyTemplate, &kAdvancedTemplate,
                            &kCaseSettingsTemplate, &kExportVariablesTemplate}) {
    EXPECT_EQ(shape->isResizable, shape == &kExportVariablesTemplate);
    for (const ControlRow& a : shape->controls) {
      EXPECT_TRUE(IsWithin(a.place, {0, 0, shape->width, shape->height})) << a.caption;
      for (const ControlRow& b : shape->controls) {
        const bool isHeld = a.kind == ControlKind::kGroup && IsWithin(b.place, a.place);
        const bool holds = b.kind == ControlKind::kGroup && IsWithin(a.place, b.place);
        if (&a == &b || isHeld || holds) continue;
        EXPECT_FALSE(Overlap(a.place, b.place))
            << a.caption << a.id << " and " << b.caption << b.id;
      }
    }
  }
}

}  // namespace
}  // namespace gantry::test
