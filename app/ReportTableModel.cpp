#include "app/ReportTableModel.h"

#include "store/ReportWriter.h"

void ReportTableModel::setColumns(const QStringList& keys, const QStringList& headers)
{
    beginResetModel();
    keys_ = keys;
    headers_ = headers;
    rows_.clear();
    endResetModel();
}

void ReportTableModel::setRows(const QList<QList<QVariant>>& rows)
{
    beginResetModel();
    rows_ = rows;
    endResetModel();
}

int ReportTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(rows_.size());
}

int ReportTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(keys_.size());
}

QVariant ReportTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rows_.size())
        return {};
    const QVariant value = rows_.at(index.row()).value(index.column());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        // As the exported text reads it: credentials of URLs masked.
        return value.isNull() ? QString() : ReportWriter::text(value);
    case ValueRole:
        return value;
    case Qt::TextAlignmentRole:
        if (value.typeId() == QMetaType::LongLong || value.typeId() == QMetaType::Int)
            return int(Qt::AlignRight | Qt::AlignVCenter);
        return {};
    default:
        return {};
    }
}

QVariant ReportTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return headers_.value(section);
    return QAbstractTableModel::headerData(section, orientation, role);
}
