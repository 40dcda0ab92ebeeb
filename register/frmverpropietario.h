#pragma once

#include <QDialog>
#include <QVariant>

namespace tv {
class Tdm;
}

namespace tv::registro {

// An owner's record, read only: what the property register shows of an
// owner from its owner buttons.
class TfrmVerPropietario : public QDialog {
    Q_OBJECT
public:
    TfrmVerPropietario(Tdm& data, const QVariant& codigo, QWidget* parent = nullptr);
    // False when the owner does not exist (any more).
    bool encontrado() const { return mEncontrado; }
    // The value shown for a column (for tests and the caller).
    QString valor(const QString& columna) const;

private:
    bool mEncontrado = false;
};

} // namespace tv::registro
