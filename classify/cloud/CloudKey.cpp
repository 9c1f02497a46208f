#include "classify/cloud/CloudKey.h"

#include <memory>

#include <libsecret/secret.h>
#include <QtCore/QStringDecoder>

namespace larkspan {

namespace {

struct Unref
{
    void operator()(gpointer object) const { g_object_unref(object); }
    void operator()(GHashTable *table) const { g_hash_table_unref(table); }
    void operator()(SecretValue *value) const { secret_value_unref(value); } // which wipes it
};
template <typename T>
using Owned = std::unique_ptr<T, Unref>;

struct FreeItems
{
    void operator()(GList *items) const { g_list_free_full(items, g_object_unref); }
};

QString textOf(SecretValue &value)
{
    gsize size = 0;
    const gchar *bytes = secret_value_get(&value, &size);
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(QByteArrayView(bytes, static_cast<qsizetype>(size)));
    return decoder.hasError() ? QString() : text.trimmed();
}

} // namespace

QString loadCloudKey(const std::stop_token &stop)
{
    const Owned<GCancellable> cancellable(g_cancellable_new());
    const std::stop_callback cancel(stop, [&] { g_cancellable_cancel(cancellable.get()); });

    // No error is of interest: each means that there is no key.
    // One of our own: the instance that the library shares outlives the service that it was made for.
    const Owned<SecretService> service(
        secret_service_open_sync(SECRET_TYPE_SERVICE, nullptr, SECRET_SERVICE_NONE, cancellable.get(), nullptr));
    if (!service) {
        return {};
    }
    const Owned<GHashTable> attributes(g_hash_table_new(g_str_hash, g_str_equal));
    const auto set = [&attributes](const char *name, const char *value) {
        g_hash_table_insert(attributes.get(), const_cast<char *>(name), const_cast<char *>(value));
    };
    set("service", "com.ostrel.binnacle");
    set("account", "cloudAPIKey");
    // Without a schema, so that it doesn't matter which tool put the key there; without unlocking.
    const std::unique_ptr<GList, FreeItems> items(secret_service_search_sync(
        service.get(), nullptr, attributes.get(), SECRET_SEARCH_NONE, cancellable.get(), nullptr));
    if (!items) {
        return {};
    }
    auto *item = static_cast<SecretItem *>(items->data);
    if (secret_item_get_locked(item) || !secret_item_load_secret_sync(item, cancellable.get(), nullptr)) {
        return {};
    }
    const Owned<SecretValue> value(secret_item_get_secret(item));
    return value ? textOf(*value) : QString();
}

} // namespace larkspan
