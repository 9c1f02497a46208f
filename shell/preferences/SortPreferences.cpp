#include "shell/preferences/SortPreferences.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

QVariant choiceOf(const QString &value, const QString &label)
{
    return QVariantMap{{u"value"_s, value}, {u"label"_s, label}};
}

} // namespace

void SortPreferences::follow(SortEngine &engine)
{
    connect(&engine, &SortEngine::optionsChanged, this, &SortPreferences::changed);
    connect(&engine, &SortEngine::targetChanged, this, &SortPreferences::changed);
    connect(&engine, &SortEngine::importRootChanged, this, &SortPreferences::changed);
    connect(&engine, &SortEngine::folderChanged, this, &SortPreferences::changed);
}

QVariantList SortPreferences::handlings()
{
    QVariantList options;
    for (const FileHandling handling : allFileHandlings) {
        options.append(choiceOf(fileHandlingRawValue(handling), fileHandlingLabel(handling)));
    }
    return options;
}

QString SortPreferences::handling() const
{
    return fileHandlingRawValue(options().fileHandling);
}

void SortPreferences::setHandling(const QString &handling)
{
    setOption(&SortOptions::fileHandling, fileHandlingFromRawValue(handling));
}

QVariantList SortPreferences::targets()
{
    QVariantList options;
    for (const NLE editor : allNLEs) {
        const QString soon = editor == NLE::premiere ? tr(" — soon") : QString();
        options.append(choiceOf(nleRawValue(editor), nleLabel(editor) + soon));
    }
    return options;
}

QString SortPreferences::target() const
{
    return nleRawValue(m_engine ? m_engine->target() : NLE::finalCut);
}

void SortPreferences::setTarget(const QString &target)
{
    if (m_engine) {
        m_engine->setTarget(nleFromRawValue(target));
    }
}

QString SortPreferences::handlingDetail() const
{
    return m_engine && m_engine->isRemovableImport()
               ? tr("Leave in place isn't available for an SD-card import — there's nowhere to leave it once the "
                    "card's ejected.")
               : tr("Copy or move physically organizes footage into per-room folders at export. Leave in place only "
                    "touches the FCPXML.");
}

QString SortPreferences::shootsFolder() const
{
    const QString path = m_engine ? m_engine->importRootPath() : QString();
    return path.isEmpty() ? tr("Not set") : path;
}

} // namespace larkspan
