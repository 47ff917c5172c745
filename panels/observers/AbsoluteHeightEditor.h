#pragma once

#include <QDialog>

#include <memory>

namespace Ui
{
class AbsoluteHeightEditor;
}

/// Dialog that asks whether to import observers outside of the DEM, and at which absolute altitude: there is no
/// ground that a height could count from.
class AbsoluteHeightEditor : public QDialog
{
    Q_OBJECT

public:
    explicit AbsoluteHeightEditor(QWidget *parent = nullptr);
    ~AbsoluteHeightEditor() override;

    /// The typed altitude above the DEM's zero, in the DEM's unit of elevations.
    double absoluteHeight() const;

private:
    std::unique_ptr<Ui::AbsoluteHeightEditor> m_form;
};
