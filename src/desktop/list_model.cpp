#include "desktop/list_model.h"

#include <functional>
#include <string_view>
#include <utility>

#include "common/text.h"
#include "desktop/binder.h"

namespace quillmarden {
namespace {

std::string_view part(std::string_view row, int column) {
  for (; column > 0; --column) {
    const std::size_t tab = row.find('\t');
    if (tab == std::string_view::npos) return {};
    row.remove_prefix(tab + 1);
  }
  return trim(row.substr(0, row.find('\t')));
}

}  // namespace

ListModel::ListModel(const ListBox& list, QStringList headings, QObject* parent)
    : QAbstractTableModel(parent),
      list_(list),
      headings_(std::move(headings)),
      rows_(list.count()),
      shown_(fingerprint()) {}

int ListModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int ListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : std::max<int>(1, static_cast<int>(headings_.size()));
}

QVariant ListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole)) return {};
  if (index.row() >= list_.count()) return {};
  const std::string& row = list_.rows[static_cast<std::size_t>(index.row())];
  if (headings_.isEmpty()) return toQt(row);
  return toQt(part(row, index.column()));
}

QVariant ListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section >= headings_.size()) return {};
  return headings_[section];
}

bool ListModel::refresh() {
  const std::size_t now = fingerprint();
  if (now == shown_ && rows_ == list_.count()) return false;
  beginResetModel();
  rows_ = list_.count();
  shown_ = now;
  endResetModel();
  return true;
}

void ListModel::setHeadings(const QStringList& headings) {
  if (headings == headings_) return;
  headings_ = headings;
  Q_EMIT headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
}

std::size_t ListModel::fingerprint() const {
  std::size_t mixed = list_.rows.size();
  for (const std::string& row : list_.rows) mixed = mixed * 1099511628211U + std::hash<std::string_view>()(row);
  return mixed;
}

}  // namespace quillmarden
