// What the views of the equaliser are bound by, as the library embeds it.

#include "EditorViews.h"

namespace tarv {

namespace {

/// Of either view.
const CBoundTable kBound = {
    {"title-frame-head.eq-invert-scale.scale-controller",
     "ui:ui-param-controller",
     {{"is-axis-zero", "false"},
      {"ui-param", "^^^cs-sliders.control-surface.sliders.ui-param-y"},
      {"ui-param-count", "^^^cs-sliders.control-surface.sliders.ui-param-count"}}},
    {"xeq-base.selector-titles", "ui:value-list", {{"mode", "audio-groups"}}},
    {"xeq-base.selector-titles-sep", "ui:value-list", {{"mode", "audio-groups"}, {"separator-char", ";"}}},
    {"xeq-base.edit-group.param-copy-button.value-list",
     "ui:value-list",
     {{"mode", "audio-groups"}, {"group-selector", "$edit"}}},
    {"min-max-gain", "ui:min-max", {{"min", "-12"}, {"max", "12"}, {"is-log", "false"}, {"scale-power", "1.0"}}},
    {"cs-gain.values", "ui:value-list", {{"mode", "manual"}}},
    {"cs-gain.control-surface.underlays",
     "ui:control-surface-group",
     {{"point-count", "1"},
      {"color", "$behind"},
      {"is-editable", "false"},
      {"is-balanced", "true"},
      {"is-fixed-x", "true"}}},
    {"cs-gain.control-surface.underlays.ui-param-y",
     "ui:ui-param",
     {{"bridge", "ui.xeq-gain-bridge"}, {"group-selector", "$underlay"}}},
    {"cs-gain.control-surface.sliders",
     "ui:control-surface-group",
     {{"point-count", "1"},
      {"color", "$edited"},
      {"is-editable", "-"},
      {"is-balanced", "true"},
      {"is-fixed-x", "true"},
      {"linked-group", "underlays"}}},
    {"cs-gain.control-surface.sliders.ui-param-y",
     "ui:ui-param",
     {{"bridge", "ui.xeq-gain-bridge"}, {"group-selector", "$edit"}}},
    {"cs-sliders.ruler-freqs.values",
     "ui:value-list",
     {{"mode", "audio-min-max"}, {"bridge", "ui.xeq-freq-bridge"}, {"group-selector", "$edit"}, {"value-count", "7"}}},
    {"cs-sliders.ruler-freqs.values.count",
     "ui:ui-param-converter",
     {{"target", "^"}, {"attr", "value-count"}, {"is-integer", "true"}}},
    {"cs-sliders.ruler-freqs.values.count.ui-param",
     "ui:ui-param",
     {{"bridge", "ui.xeq-band-count-bridge"}, {"group-selector", "-"}}},
    {"cs-sliders.control-surface.underlays",
     "ui:control-surface-group",
     {{"point-count", "-"},
      {"color", "$behind"},
      {"is-editable", "false"},
      {"is-balanced", "true"},
      {"is-fixed-x", "true"}}},
    {"cs-sliders.control-surface.underlays.ui-param-count",
     "ui:ui-param",
     {{"bridge", "ui.xeq-band-count-bridge"}, {"group-selector", "-"}}},
    {"cs-sliders.control-surface.underlays.ui-param-y",
     "ui:ui-param",
     {{"bridge", "ui.xeq-bridge"}, {"group-selector", "$underlay"}}},
    {"cs-sliders.control-surface.sliders",
     "ui:control-surface-group",
     {{"point-count", "-"},
      {"color", "$edited"},
      {"is-editable", "-"},
      {"is-balanced", "true"},
      {"is-fixed-x", "true"},
      {"linked-group", "underlays"}}},
    {"cs-sliders.control-surface.sliders.ui-param-count",
     "ui:ui-param",
     {{"bridge", "ui.xeq-band-count-bridge"}, {"group-selector", "-"}}},
    {"cs-sliders.control-surface.sliders.ui-param-y",
     "ui:ui-param",
     {{"bridge", "ui.xeq-bridge"}, {"group-selector", "$edit"}}},
};

class EditorBindingTree : public CEditorViews {};

TEST_F(EditorBindingTree, HoldsEveryBindingOfBothViewsAndNoOther) {
    const auto editor = makeEditor();
    for (const CEqualizer& equalizer : kEqualizers) {
        expectBindings(*editor->findObject(equalizer.path), kBound, equalizer.replacements);
    }
}

}  // namespace

}  // namespace tarv
