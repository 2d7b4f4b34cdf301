#pragma once
namespace dialcraft {

// Copies one knob between its record and its three slots of `configuration`.
// The main window and the device panel each have these copies; they differ
// only in that the panel's config-to-record copy prints no progress line.
class GlobalState;

// The window's working knob panels, knobs 0 to 26 (slots 0 to 80), are the
// ones copied at start-up, shut-down, import and export; record 27 is the
// inert placeholder and never is.
inline constexpr int mapped_knob_count = 27;

enum class SlotMappingView { ContentView, CreateConfigAreaView };

// Record i -> slots 3i..3i+2, written as they stand.
void SetupAreaData_index_UI_to_config(GlobalState& state, int config_index_i,
                                      SlotMappingView view = SlotMappingView::ContentView);
// Slots 3i..3i+2 -> record i, each validated.
void SetupAreaData_index_config_to_UI(GlobalState& state, int config_index_i,
                                      SlotMappingView view = SlotMappingView::ContentView);

}  // namespace dialcraft
