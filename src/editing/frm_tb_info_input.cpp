#include <array>

#include "common/message.h"
#include "common/text.h"
#include "editing/frm_tb_info.h"
#include "editing/tb_info_parts.h"

namespace quillmarden {

namespace {

constexpr std::array kInputBoxes = {&frmTBInfo::TxtJPN,      &frmTBInfo::TxtTableName, &frmTBInfo::TxtRyaku,
                                    &frmTBInfo::TxtMemo,     &frmTBInfo::TxtInpForm,   &frmTBInfo::TxtTanto,
                                    &frmTBInfo::TxtMakeDate, &frmTBInfo::TxtEndDate,   &frmTBInfo::TxtChgDate,
                                    &frmTBInfo::TxtTbSpace,  &frmTBInfo::TxtIndexSpace};
constexpr std::array kInputLists = {&frmTBInfo::CmbBunrui,  &frmTBInfo::CmbHost,       &frmTBInfo::CmbFileType,
                                    &frmTBInfo::CmbKanKaku, &frmTBInfo::CmbDataBunrui, &frmTBInfo::CmbDataBunrui2,
                                    &frmTBInfo::CmbInpData, &frmTBInfo::CmbStat,       &frmTBInfo::CmbKensu};
constexpr std::array kInputMarks = {&frmTBInfo::ChkEditOK,  &frmTBInfo::ChkAllSystem, &frmTBInfo::ChkRecUpdate,
                                    &frmTBInfo::ChkReverse, &frmTBInfo::ChkPmark,     &frmTBInfo::ChkBRIN,
                                    &frmTBInfo::ChkTrigger};

}  // namespace

std::vector<std::string> inputOf(const frmTBInfo& screen) {
  std::vector<std::string> input;
  for (const auto box : kInputBoxes) input.push_back((screen.*box).text);
  for (const auto list : kInputLists) input.push_back((screen.*list).text);
  for (const TextBox& count : screen.TxtKensu) input.push_back(count.text);
  for (const TextBox& figure : screen.TxtOra) input.push_back(figure.text);
  for (const auto mark : kInputMarks) input.emplace_back((screen.*mark).value ? "1" : "");
  return input;
}

bool isChanged(const frmTBInfo& screen) { return inputOf(screen) != screen.loadedInput; }

bool cmdCancel_Click(Host& host, frmTBInfo& screen) {
  if (!screen.cmdOK.enabled || !isChanged(screen)) return false;
  const std::string_view japanese = trim(screen.TxtJPN.text), name = trim(screen.TxtTableName.text);
  return gAskKeepEditing(host, !japanese.empty() ? japanese : !name.empty() ? name : screen.caption);
}

}  // namespace quillmarden
