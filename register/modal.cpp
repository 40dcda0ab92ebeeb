#include "modal.h"

#include <QDialog>

namespace tv::registro {

namespace {

EjecutorModal& ejecutor()
{
    static EjecutorModal e;
    return e;
}

} // namespace

int ejecutarModal(QDialog& dialog)
{
    if (ejecutor())
        return ejecutor()(dialog);
    return dialog.exec();
}

void setEjecutorModal(EjecutorModal e)
{
    ejecutor() = std::move(e);
}

} // namespace tv::registro
