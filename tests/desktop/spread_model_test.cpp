#include "desktop/spread_model.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>

#include "spread_samples.h"

namespace quillmarden {
namespace {

using Mode = QAbstractItemModelTester::FailureReportingMode;

/// The row and column signals that a model gave.
struct Signals {
  explicit Signals(SpreadModel& model) {
    QObject::connect(&model, &QAbstractItemModel::modelReset, [this] { ++resets; });
    QObject::connect(&model, &QAbstractItemModel::rowsInserted, [this] { ++inserted; });
    QObject::connect(&model, &QAbstractItemModel::rowsRemoved, [this] { ++removed; });
    QObject::connect(&model, &QAbstractItemModel::dataChanged, [this] { ++changed; });
  }
  int resets = 0, inserted = 0, removed = 0, changed = 0;
};

TEST(SpreadModel, HoldsWhatQtAsksOfAModelWhileTheRecordChanges) {
  Spread spread = sampleSpread(3);
  SpreadModel model(spread);
  QAbstractItemModelTester tester(&model, Mode::Fatal);
  model.setGrows(true);
  spread.setText(1, 1, "顧客");
  spread.insertRow(2);
  model.refresh();
  spread.deleteRow(1);
  spread.deleteRow(1);
  // The record is ahead of the model here; what Qt asks must still fit what it was told.
  EXPECT_EQ(model.rowCount(), 5);
  EXPECT_EQ(model.index(4, 0).data().toString(), "");
  model.refresh();
  spread.setMaxRows(0);
  model.refresh();
  spread.setColumns({{.title = "一列"}});
  model.refresh();
  EXPECT_EQ(model.columnCount(), 1);
  spread.setColumns({});
  model.refresh();
  EXPECT_EQ(model.rowCount(), 0);
}

TEST(SpreadModel, TellsNoMoreThanWhatChanged) {
  Spread spread = sampleSpread(2);
  SpreadModel model(spread);
  Signals given(model);
  model.refresh();
  EXPECT_EQ(given.changed + given.resets + given.inserted, 0);
  spread.setText(1, 1, "x");
  model.refresh();
  EXPECT_EQ(given.changed, 1);
  spread.setText(1, 4, "grown");
  model.refresh();
  EXPECT_EQ(given.inserted, 1);
  EXPECT_EQ(given.resets, 0);
  spread.lockAll();
  model.refresh();
  EXPECT_EQ(given.resets, 1);
}

TEST(SpreadModel, ShowsEachKindInItsWay) {
  Spread spread = sampleSpread(2);
  spread.setText(1, 1, "顧客ID");
  spread.setText(2, 1, "-1");
  spread.setText(5, 1, "-1234567.5");
  spread.setBackColour(1, 1, 0x0000FF);
  spread.setBackColour(1, 2, 0xFFFFFF);
  spread.setKind(3, 2, CellKind::Static);
  SpreadModel model(spread);
  EXPECT_EQ(model.headerData(0, Qt::Horizontal, Qt::DisplayRole).toString(), "名称");
  EXPECT_EQ(model.index(0, 0).data().toString(), "顧客ID");
  EXPECT_EQ(model.index(0, 1).data(Qt::CheckStateRole).toInt(), Qt::Checked);
  EXPECT_EQ(model.index(1, 1).data(Qt::CheckStateRole).toInt(), Qt::Unchecked);
  EXPECT_EQ(model.index(0, 4).data().toString(), "-1,234,567.5");
  EXPECT_EQ(model.index(0, 4).data(Qt::EditRole).toString(), "-1234567.5");
  EXPECT_TRUE(model.index(0, 0).data(Qt::BackgroundRole).isValid());
  EXPECT_EQ(model.index(0, 0).data(Qt::ForegroundRole).value<QColor>(), QColor(Qt::white)) << "readable on red";
  EXPECT_FALSE(model.index(1, 0).data(Qt::BackgroundRole).isValid()) << "white is the ground";
  EXPECT_FALSE(model.index(1, 0).data(Qt::ForegroundRole).isValid());
  EXPECT_TRUE(model.flags(model.index(0, 2)) & Qt::ItemIsEditable);
  EXPECT_FALSE(model.flags(model.index(1, 2)) & Qt::ItemIsEditable) << "this cell alone is static";
  EXPECT_FALSE(model.flags(model.index(0, 6)) & Qt::ItemIsEditable);
}

TEST(SpreadModel, ALockedGridTakesNothing) {
  Spread spread = sampleSpread(1);
  spread.setText(1, 1, "alt");
  spread.lockAll();
  SpreadModel model(spread);
  model.setGrows(true);
  EXPECT_EQ(model.rowCount(), 1) << "no row waits below a locked grid";
  EXPECT_FALSE(model.setData(model.index(0, 0), "neu", Qt::EditRole));
  EXPECT_FALSE(model.setData(model.index(0, 1), Qt::Checked, Qt::CheckStateRole));
  EXPECT_EQ(spread.text(1, 1), "alt");
}

TEST(SpreadModel, TheWaitingRowBecomesARowWhenSomethingIsTyped) {
  Spread spread = sampleSpread(1);
  SpreadModel model(spread);
  model.setGrows(true);
  ASSERT_EQ(model.rowCount(), 2);
  EXPECT_EQ(model.kindAt(model.index(1, 2)), CellKind::List);
  EXPECT_TRUE(model.setData(model.index(1, 0), "新", Qt::EditRole));
  EXPECT_EQ(spread.maxRows(), 2);
  EXPECT_EQ(model.rowCount(), 3);
}

}  // namespace
}  // namespace quillmarden
