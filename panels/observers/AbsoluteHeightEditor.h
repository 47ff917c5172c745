#pragma once

#include <QDialog>

#include <memory>

namespace Ui
{
class AbsoluteHeightEditor;
}

/// Asks whether observers outside of the DEM are imported, too, and at which altitude: there is no ground under
/// them.
class AbsoluteHeightEditor : public QDialog
{
    Q_OBJECT

public:
    explicit AbsoluteHeightEditor(QWidget *parent = nullptr);
    ~AbsoluteHeightEditor() override;

    /// In the DEM's unit of elevations.
    double absoluteHeight() const;

private:
    std::unique_ptr<Ui::AbsoluteHeightEditor> m_form;
};
