#include "desktop/frm_report_view.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <algorithm>
#include <functional>
#include <utility>

#include "desktop/elided_label.h"
#include "desktop/spread_view.h"
#include "excel/query_report.h"

namespace quillmarden {

namespace {

constexpr int kReportMargin = 12;
// Columns follow the texts of this many rows, and no text makes one wider than this; pixels.
constexpr int kMeasuredRows = 200;
constexpr int kWidest = 420;
constexpr int kPadding = 18;

/// A box that also tells when a person asks for a list that is empty.
class QueryBox : public QComboBox {
 public:
  std::function<void()> emptyPressed;

  void showPopup() override {
    if (count() == 0 && emptyPressed) return emptyPressed();
    QComboBox::showPopup();
  }
};

}  // namespace

FrmReportView::FrmReportView(Front& front, std::string screen)
    : View(front, std::move(screen)), record_(app().report), grid_(new SpreadView(record_.Spread, {})) {
  binder().bindTitle(this, record_.caption);
  binder().unseen({"Spread"});
  grid_->setObjectName(QStringLiteral("Spread"));
  grid_->setAlternatingRowColors(true);
  const AppSettings& settings = app().session.settings;
  grid_->setLook(settings.fontSize2Spread, settings.spreadRowHeightScale);
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(kReportMargin, kReportMargin, kReportMargin, kReportMargin);
  rows->setSpacing(10);
  rows->addWidget(makeQuery());
  rows->addWidget(grid_, 1);
  rows->addWidget(makeFoot());
  binder().onRefresh([this] { showResult(); });
  resize(980, 600);
}

QWidget* FrmReportView::makeQuery() {
  auto* card = new QFrame;
  card->setObjectName(QStringLiteral("card"));
  auto* row = new QHBoxLayout(card);
  row->setContentsMargins(kReportMargin, 10, kReportMargin, 10);
  row->setSpacing(10);
  auto* queries = new QueryBox;
  queries->setMinimumContentsLength(16);
  queries->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  const Handler choose = [this] { CmbDataSource_Click(app().session, app().host, record_); };
  queries->emptyPressed = binder().act(choose);
  binder().bind("CmbDataSource", static_cast<QComboBox*>(queries), record_.CmbDataSource, choose);
  row->addWidget(headed("Query", queries), 2);
  for (std::size_t place = 0; place < record_.TxtPara.size(); ++place) row->addWidget(makeParameter(place), 1);
  auto* run = binder().bind("CmdFind", new QPushButton(QStringLiteral("実行")), record_.CmdFind, [this] { find(); });
  run->setDefault(true);
  run->setShortcut(Qt::Key_F5);
  run->setToolTip(QStringLiteral("Queryを実行します. (F5)"));
  row->addWidget(run, 0, Qt::AlignBottom);
  return card;
}

QWidget* FrmReportView::makeParameter(std::size_t place) {
  const std::string number = std::to_string(place);
  auto* around = new QWidget;
  auto* rows = new QVBoxLayout(around);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(2);
  auto* words = new QHBoxLayout;
  auto* heading = new QLabel(QStringLiteral("パラメータ%1").arg(place + 1));
  heading->setProperty("role", "heading");
  words->addWidget(heading);
  words->addStretch(1);
  auto* type = new QLabel;
  type->setProperty("role", "heading");
  words->addWidget(binder().bind("lblKata:" + number, type, record_.lblKata[place]));
  rows->addLayout(words);
  auto* box = binder().bind("TxtPara:" + number, new QLineEdit, record_.TxtPara[place]);
  heading->setBuddy(box);
  binder().onRefresh([this, box, place] {
    const QString name = toQt(record_.TxtParaTips[place]);
    if (box->toolTip() == name) return;
    box->setToolTip(name);
    box->setPlaceholderText(name);
  });
  connect(box, &QLineEdit::returnPressed, this, binder().act([this] { find(); }));
  rows->addWidget(box);
  parameters_.at(place) = box;
  return around;
}

QWidget* FrmReportView::makeFoot() {
  auto* around = new QWidget;
  auto* row = new QHBoxLayout(around);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(8);
  auto* count = binder().bind("lblNum", new QLabel, record_.lblNum);
  auto* unit = new QLabel(QStringLiteral("件"));
  for (QLabel* label : {count, unit}) label->setProperty("role", "faint");
  binder().onRefresh([this, unit] { unit->setVisible(!record_.lblNum.caption.empty()); });
  row->addWidget(count);
  row->addWidget(unit);
  auto* wait = binder().bind("PicMsg", new QWidget, record_.PicMsg);
  auto* waitRow = new QHBoxLayout(wait);
  waitRow->setContentsMargins(0, 0, 0, 0);
  waitRow->addWidget(binder().bind("lblMsg", new QLabel, record_.lblMsg));
  row->addWidget(wait);
  row->addStretch(1);
  row->addWidget(binder().bind("CmdExcel", new QPushButton(QStringLiteral("Excel出力")), record_.CmdExcel, [this] {
    BookRun run;
    CmdExcel_Click(app().session, app().host, run, record_, true);
  }));
  auto* open = binder().bind("CmdAccess", new QPushButton(QStringLiteral("MDBを開く")), record_.CmdAccess,
                             [this] { CmdAccess_Click(app().session, app().host, record_); });
  open->setToolTip(QStringLiteral("接続先のデータベースを開きます."));
  row->addWidget(open);
  auto* close = binder().bind("CmdClose", new QPushButton(QStringLiteral("閉じる")), record_.CmdClose);
  connect(close, &QPushButton::clicked, this, &QWidget::close);
  row->addWidget(close);
  return around;
}

void FrmReportView::find() {
  CmdFind_Click(app().session, app().host, record_);
  const int faulty = std::exchange(record_.focusPara, -1);
  if (faulty < 0) return;
  QLineEdit* box = parameters_.at(static_cast<std::size_t>(faulty));
  box->setFocus();
  box->selectAll();
}

void FrmReportView::showResult() {
  if (shownRevision_ == record_.Spread.revision()) return;
  shownRevision_ = record_.Spread.revision();
  grid_->refresh();
  for (int column = 1; column <= record_.Spread.maxCols(); ++column)
    grid_->setColumnWidth(column - 1, std::min(neededWidth(column), kWidest));
}

int FrmReportView::neededWidth(int column) const {
  const Spread& grid = record_.Spread;
  int width = grid_->horizontalHeader()->fontMetrics().horizontalAdvance(toQt(grid.column(column).title));
  const QFontMetrics metrics = grid_->fontMetrics();
  for (int row = 1; row <= std::min(grid.maxRows(), kMeasuredRows); ++row)
    width = std::max(width, metrics.horizontalAdvance(toQt(grid.text(column, row))));
  return width + kPadding;
}

void FrmReportView::aboutToRelease() { grid_->setModel(nullptr); }

}  // namespace quillmarden
