#include "screens/copies/Verification.h"

namespace larkspan {

void Verification::follow(SortEngine &engine)
{
    connect(&engine, &SortEngine::optionsChanged, this, &Verification::changed);
}

void Verification::setOn(bool on)
{
    if (m_engine) {
        SortOptions options = m_engine->options();
        options.verifyLevel = on ? VerifyLevel::checksum : VerifyLevel::sizeOnly;
        m_engine->setOptions(options);
    }
}

QString Verification::note(const SortOptions &options)
{
    return isOn(options) ? tr("Each copy will be read back and compared byte for byte.")
                         : tr("Copies will be checked by size only.");
}

} // namespace larkspan
