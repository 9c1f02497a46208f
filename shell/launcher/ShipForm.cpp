#include "shell/launcher/ShipForm.h"

namespace larkspan {

ShipForm::ShipForm(QObject *parent) : QObject(parent)
{
    for (const auto signal : {&ShipForm::isOpenChanged, &ShipForm::emailChanged, &ShipForm::isSentChanged}) {
        connect(this, signal, this, &ShipForm::changed);
    }
}

void ShipForm::send()
{
    if (canSend()) {
        setSent(true);
    }
}

void ShipForm::clear()
{
    setOpen(false);
    setEmail(QString());
    setSent(false);
}

} // namespace larkspan
