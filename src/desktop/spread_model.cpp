#include "desktop/spread_model.h"

#include <QColor>
#include <QLocale>

#include "common/numbers.h"
#include "common/text.h"
#include "desktop/binder.h"
#include "desktop/theme.h"
#include "editing/frm_tb_detail.h"

namespace quillmarden {

namespace {

// Two colours of a record stand for what the theme has for them: the ground of a cell, and the face of a button.
constexpr Colour kWhite = 0xFFFFFF;
constexpr Colour kButtonFace = 0xF0F0F0;
/// Longer texts get a tool tip, since a cell may cut them.
constexpr int kTipLength = 12;

/// Whether dark text cannot be read on it.
bool isDarkColour(const QColor& colour) {
  constexpr int kMiddle = 128;
  return qGray(colour.rgb()) < kMiddle;
}

bool isNumber(CellKind kind) { return kind == CellKind::Integer || kind == CellKind::Float; }

}  // namespace

SpreadModel::SpreadModel(Spread& spread, QObject* parent) : QAbstractTableModel(parent), spread_(spread) {
  rows_ = wantedRows();
  columns_ = spread_.maxCols();
  looks_ = columnLooks();
  locked_ = spread_.locked();
  revision_ = spread_.revision();
}

std::vector<SpreadModel::ColumnLook> SpreadModel::columnLooks() const {
  std::vector<ColumnLook> looks;
  looks.reserve(static_cast<std::size_t>(spread_.maxCols()));
  for (int col = 1; col <= spread_.maxCols(); ++col) {
    const SpreadColumn& column = spread_.column(col);
    looks.push_back({column.title, column.width, column.hidden});
  }
  return looks;
}

int SpreadModel::wantedRows() const {
  const bool waiting = grows_ && !spread_.locked() && spread_.maxCols() > 0 && spread_.maxRows() < Spread::kMaxRows;
  return spread_.maxRows() + (waiting ? 1 : 0);
}

void SpreadModel::takeRows(int rows) {
  if (rows > rows_) {
    beginInsertRows({}, rows_, rows - 1);
    rows_ = rows;
    endInsertRows();
  } else if (rows < rows_) {
    beginRemoveRows({}, rows, rows_ - 1);
    rows_ = rows;
    endRemoveRows();
  }
}

void SpreadModel::refresh() {
  std::vector<ColumnLook> looks = columnLooks();
  const bool otherLooks = looks != looks_;
  if (revision_ == spread_.revision() && rows_ == wantedRows() && !otherLooks) return;
  revision_ = spread_.revision();
  looks_ = std::move(looks);
  if (spread_.maxCols() != columns_ || locked_ != spread_.locked()) {
    beginResetModel();
    columns_ = spread_.maxCols();
    rows_ = wantedRows();
    locked_ = spread_.locked();
    endResetModel();
  } else {
    // The record does not tell which rows moved. Growing and shrinking at the end keeps the place and the selection.
    takeRows(wantedRows());
    if (rows_ > 0 && columns_ > 0) Q_EMIT dataChanged(index(0, 0), index(rows_ - 1, columns_ - 1));
    if (otherLooks && columns_ > 0) Q_EMIT headerDataChanged(Qt::Horizontal, 0, columns_ - 1);
  }
  if (otherLooks && columnsChanged) columnsChanged();
}

void SpreadModel::setGrows(bool grows) {
  grows_ = grows;
  takeRows(wantedRows());
}

int SpreadModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int SpreadModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : columns_; }

CellKind SpreadModel::kindAt(const QModelIndex& index) const {
  if (!index.isValid()) return CellKind::Static;
  const int col = index.column() + 1;
  const int row = index.row() + 1;
  if (row > spread_.maxRows() && col <= spread_.maxCols() && !spread_.locked()) return spread_.column(col).kind;
  return spread_.kind(col, row);
}

QVariant SpreadModel::shownText(const QModelIndex& index) const {
  const std::string_view text = spread_.text(index.column() + 1, index.row() + 1);
  switch (kindAt(index)) {
    case CellKind::Check:
      return {};
    case CellKind::Float:
      // Stored plain, shown with separators.
      if (isNumeric(text)) return QLocale(QLocale::Japanese).toString(gVal(text), 'f', QLocale::FloatingPointShortest);
      break;
    default:
      break;
  }
  return toQt(text);
}

QVariant SpreadModel::background(const QModelIndex& index) const {
  const auto colour = spread_.backColour(index.column() + 1, index.row() + 1);
  if (colour == kWhite) return {};
  if (colour && colour != kButtonFace) return toBackground(*colour);
  const bool owned = colour == kButtonFace || spread_.column(index.column() + 1).kind == CellKind::Static;
  return owned ? QVariant(palette().window) : QVariant();
}

QVariant SpreadModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.column() >= spread_.maxCols()) return {};
  const int col = index.column() + 1;
  const int row = index.row() + 1;
  switch (role) {
    case Qt::DisplayRole:
      return shownText(index);
    case Qt::EditRole:
      return toQt(spread_.text(col, row));
    case Qt::CheckStateRole:
      if (kindAt(index) != CellKind::Check) return {};
      return isKey(spread_.text(col, row)) ? Qt::Checked : Qt::Unchecked;
    case Qt::BackgroundRole:
      return background(index);
    case Qt::ForegroundRole: {
      const QVariant ground = background(index);
      return ground.isValid() && isDarkColour(ground.value<QColor>()) ? QVariant(QColor(Qt::white)) : QVariant();
    }
    case Qt::TextAlignmentRole:
      if (isNumber(spread_.column(col).kind)) return QVariant(Qt::AlignRight | Qt::AlignVCenter);
      if (spread_.column(col).kind == CellKind::Check) return QVariant(Qt::AlignCenter);
      return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    case Qt::ToolTipRole: {
      const QString text = toQt(spread_.text(col, row));
      return text.size() > kTipLength ? QVariant(text) : QVariant();
    }
    case kKindRole:
      return static_cast<int>(kindAt(index));
    case kMaxLengthRole:
      return spread_.column(col).maxLength;
    case kEntriesRole: {
      QStringList entries;
      for (const std::string& entry : spread_.column(col).entries) entries.append(toQt(entry));
      return entries;
    }
    case kOpenRole:
      return spread_.column(col).open;
    case kMinimumRole:
      return spread_.column(col).minimum;
    case kMaximumRole:
      return spread_.column(col).maximum;
    default:
      return {};
  }
}

TypedCell SpreadModel::typed(const QModelIndex& index, std::string_view text) const {
  const int col = index.column() + 1;
  // What stands there stays, even where the cell would not take it any more.
  if (text == spread_.text(col, index.row() + 1)) return {std::string(text), ""};
  const SpreadColumn& column = spread_.column(col);
  TypedCell cell = typedCell(column, kindAt(index), text);
  if (!cell.fault.empty()) cell.fault = "[" + gReplaceAll(column.title, "\n", "") + "]" + cell.fault;
  return cell;
}

QString SpreadModel::faultOf(const QModelIndex& index, const QString& text) const {
  return toQt(typed(index, fromQt(text)).fault);
}

bool SpreadModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (!index.isValid() || !editable(index)) return false;
  std::string text;
  if (role == Qt::CheckStateRole) {
    text = value.toInt() == Qt::Checked ? "-1" : "0";
  } else if (role == Qt::EditRole) {
    text = fromQt(value.toString());
  } else {
    return false;
  }
  const int col = index.column() + 1;
  const int row = index.row() + 1;
  if (text == spread_.text(col, row)) return true;
  const TypedCell cell = typed(index, text);
  if (!cell.fault.empty()) {
    if (refused) refused(index, toQt(cell.fault));
    return false;
  }
  if (writeCell) {
    writeCell(col, row, cell.text);
  } else {
    spread_.setText(col, row, cell.text);
  }
  refresh();
  return true;
}

Qt::ItemFlags SpreadModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
  const CellKind kind = kindAt(index);
  if (kind == CellKind::Check) return flags | Qt::ItemIsUserCheckable;
  return kind == CellKind::Static ? flags : flags | Qt::ItemIsEditable;
}

QVariant SpreadModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Vertical) {
    if (role == Qt::TextAlignmentRole) return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    if (role != Qt::DisplayRole || section < 0 || section >= rows_) return {};
    return section < spread_.maxRows() ? QString::number(section + 1) : QStringLiteral("＊");
  }
  if (section < 0 || section >= spread_.maxCols()) return {};
  if (role == Qt::DisplayRole || role == Qt::ToolTipRole) return toQt(spread_.text(section + 1, 0));
  return {};
}

}  // namespace quillmarden
