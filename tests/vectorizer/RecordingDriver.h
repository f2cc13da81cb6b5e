// A driver that keeps what the vectorizer hands it, in one view and layer, with helpers to read
// the collected primitives back; and a fixture that makes it the active driver with fresh
// per-entity state.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "drivers/TRANS_BASE2.h"
#include "projects/common/ProgramInfo.h"
#include "vectorizer/EntityDrawState.h"
#include "vectorizer/EntityRuleState.h"
#include "vectorizer/OutputDriverPointer.h"
#include "vectorizer/ViewportExtents.h"

namespace vectest {

class RecordingDriver : public TRANS_BASE2 {
public:
  explicit RecordingDriver(int formatCode = 1016) : formatCode_(formatCode) {
    SetPointTolerance(1e-9);
    DefineView(OdString(L"view"), kViewModelSpace);
    SetLayer(OdString(L"0"), 7);
  }
  int GetFormatCode() override { return formatCode_; }
  int AcceptsTrueColors() override { return 1; }

  // Every colour group of every layer of the view, in creation order.
  std::vector<const DrvColorGroup*> Groups() const {
    std::vector<const DrvColorGroup*> groups;
    for (const auto& entry : m_views.front().layers) {
      for (const DrvColorGroup& group : entry.second.colorGroups) groups.push_back(&group);
    }
    return groups;
  }
  template <class T>
  std::vector<T> All(std::vector<T> DrvColorGroup::*list) const {
    std::vector<T> all;
    for (const DrvColorGroup* group : Groups()) all.insert(all.end(), (group->*list).begin(), (group->*list).end());
    return all;
  }
  // The same, of one layer only.
  template <class T>
  std::vector<T> OnLayer(const OdString& layer, std::vector<T> DrvColorGroup::*list) const {
    std::vector<T> all;
    auto found = m_views.front().layers.find(layer);
    if (found == m_views.front().layers.end()) return all;
    for (const DrvColorGroup& group : found->second.colorGroups) {
      all.insert(all.end(), (group.*list).begin(), (group.*list).end());
    }
    return all;
  }
  std::vector<DrvPolyline> Polylines() const { return All(&DrvColorGroup::polylines); }
  std::vector<DrvLine> Lines() const { return All(&DrvColorGroup::lines); }
  std::vector<DrvArc> Arcs() const { return All(&DrvColorGroup::arcs); }
  std::vector<DrvCircle> Circles() const { return All(&DrvColorGroup::circles); }
  std::vector<OdGePoint2d> Dots() const { return All(&DrvColorGroup::points); }
  std::vector<DrvImage> Images() const { return All(&DrvColorGroup::images); }
  std::vector<DrvText> Texts() const {
    std::vector<DrvText> texts;
    for (const DrvColorGroup* group : Groups()) {
      for (const DrvFontGroup& font : group->fontGroups) texts.insert(texts.end(), font.texts.begin(), font.texts.end());
    }
    return texts;
  }
  const std::vector<DrvRoomLabel>& RoomLabels() const { return m_views.front().roomLabels; }
  size_t PrimitiveCount() const {
    return Polylines().size() + Lines().size() + Arcs().size() + Circles().size() + Dots().size() +
           Images().size() + Texts().size();
  }

private:
  int formatCode_;
};

// The driver reads and writes its font files in the program directory: a scratch one per test.
class VectorizerTest : public ::testing::Test {
protected:
  VectorizerTest() {
    scratch_ = std::filesystem::temp_directory_path() /
               ("dm_vec_" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
    std::filesystem::create_directories(scratch_);
    savedProgramDirectory_ = g_ProgramDirectory;
    g_ProgramDirectory = scratch_.string() + "/";
    g_EntityDrawState = EntityDrawState();
    g_EntityRuleState = EntityRuleState();
    g_ViewportExtents.Clear();
  }
  ~VectorizerTest() override {
    g_pOutputDriver = nullptr;
    drivers_.clear();
    g_ProgramDirectory = savedProgramDirectory_;
    std::error_code ignored;
    std::filesystem::remove_all(scratch_, ignored);
  }
  RecordingDriver& UseDriver(int formatCode = 1016) {
    drivers_.push_back(std::make_unique<RecordingDriver>(formatCode));
    g_pOutputDriver = drivers_.back().get();
    return *drivers_.back();
  }
  const std::filesystem::path& Scratch() const { return scratch_; }

private:
  std::filesystem::path scratch_;
  std::string savedProgramDirectory_;
  std::vector<std::unique_ptr<RecordingDriver>> drivers_;
};

}  // namespace vectest
