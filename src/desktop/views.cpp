#include "desktop/views.h"

#include <algorithm>

#include "desktop/frm_app_bar_view.h"
#include "desktop/frm_color_view.h"
#include "desktop/frm_divi_info_view.h"
#include "desktop/frm_division_view.h"
#include "desktop/frm_kensu_view.h"
#include "desktop/frm_log_in_new_view.h"
#include "desktop/frm_memo_view.h"
#include "desktop/frm_options_view.h"
#include "desktop/frm_report_view.h"
#include "desktop/frm_sp_sort_view.h"
#include "desktop/frm_splash_view.h"
#include "desktop/frm_system_inf_view.h"
#include "desktop/frm_tb_detail_view.h"
#include "desktop/frm_tb_info_view.h"
#include "desktop/frm_tb_list_view.h"
#include "desktop/small_views.h"

namespace quillmarden {
namespace {

template <typename Screen>
View* make(Front& front, const std::string& screen) {
  return new Screen(front, screen);
}

}  // namespace

const std::vector<ViewMaker>& viewMakers() {
  static const std::vector<ViewMaker> kMakers = {
      {"frmSplash", make<FrmSplashView>},
      {"frmLogInNew", make<FrmLogInNewView>},
      {"frmAppBar", make<FrmAppBarView>},
      {"frmTBList", make<FrmTbListView>},
      {"frmTBDetail", make<FrmTbDetailView>},
      {"frmTBInfo", make<FrmTbInfoView>, true},
      {"frmSystemInf", make<FrmSystemInfView>, true},
      {"frmSpSort", make<FrmSpSortView>, true},
      {"frmDivision", make<FrmDivisionView>},
      {"frmDiviInfo", make<FrmDiviInfoView>, true},
      {"frmDiviRef", make<FrmDiviRefView>, true},
      {"frmKENSU", make<FrmKensuView>},
      {"frmMemo", make<FrmMemoView>, true},
      {"frmReport", make<FrmReportView>},
      {"frmOptions", make<FrmOptionsView>, true},
      {"frmCOLOR", make<FrmColorView>, true},
      {"frmAbout", make<FrmAboutView>, true},
      {"frmMSG", make<FrmMsgView>, true},
      {"frmMessageClose", make<FrmMessageCloseView>},
      {"frmdetailslist", make<FrmDetailsListView>, true},
  };
  return kMakers;
}

const ViewMaker* findViewMaker(std::string_view screen) {
  const std::string_view base = screen.substr(0, screen.find(':'));
  const auto& makers = viewMakers();
  const auto found =
      std::find_if(makers.begin(), makers.end(), [&](const ViewMaker& maker) { return maker.screen == base; });
  return found == makers.end() ? nullptr : &*found;
}

}  // namespace quillmarden
