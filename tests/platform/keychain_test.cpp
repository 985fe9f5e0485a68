// Needs a Secret Service on a private session bus: run through with_keyring.sh.
#include "platform/linux/secret_service_keychain.h"

#include "scratch.h"

#include <gtest/gtest.h>

#include <libsecret/secret.h>

namespace corvane {

using tests::Stopwatch;

TEST(SecretServiceKeychain, KeepsOnePasswordUnderTheCurrentName) {
    SecretServiceKeychain keychain;
    EXPECT_FALSE(keychain.exists(Keychain::currentService));
    EXPECT_FALSE(keychain.load(Keychain::currentService).has_value());
    const std::string password = "pä'ss \"wörd\" $HOME 🎛";
    ASSERT_EQ(keychain.save({"somebody", Secret("older")}), std::nullopt);
    ASSERT_EQ(keychain.save({"operator", Secret(password)}), std::nullopt);
    EXPECT_TRUE(keychain.exists(Keychain::currentService));
    EXPECT_FALSE(keychain.exists(Keychain::olderService));
    const auto kept = keychain.load(Keychain::currentService);
    ASSERT_TRUE(kept.has_value());
    EXPECT_EQ(kept->user, "operator");
    EXPECT_EQ(kept->password.reveal(), password);

    // The label is what the desktop's own password manager shows.
    GError* error = nullptr;
    const SecretSchema schema = {"app.halvorant.WendrelX",
                                 SECRET_SCHEMA_NONE,
                                 {{"service", SECRET_SCHEMA_ATTRIBUTE_STRING}, {nullptr, {}}},
                                 0,
                                 nullptr,
                                 nullptr,
                                 nullptr,
                                 nullptr,
                                 nullptr,
                                 nullptr,
                                 nullptr};
    GList* items = secret_password_search_sync(&schema, SECRET_SEARCH_ALL, nullptr, &error, "service",
                                               Keychain::currentService, nullptr);
    ASSERT_EQ(error, nullptr);
    ASSERT_EQ(g_list_length(items), 1U) << "the earlier item is gone";
    gchar* label = secret_retrievable_get_label(SECRET_RETRIEVABLE(items->data));
    EXPECT_STREQ(label, Keychain::label);
    g_free(label);
    g_list_free_full(items, g_object_unref);

    keychain.remove(Keychain::currentService);
    EXPECT_FALSE(keychain.exists(Keychain::currentService));
}

TEST(SecretServiceKeychain, SeesALockedItemWithoutUnlockingIt) {
    SecretServiceKeychain keychain;
    ASSERT_EQ(keychain.save({"operator", Secret("x")}), std::nullopt);
    GError* error = nullptr;
    SecretService* service = secret_service_get_sync(SECRET_SERVICE_LOAD_COLLECTIONS, nullptr, &error);
    ASSERT_EQ(error, nullptr);
    SecretCollection* collection = secret_collection_for_alias_sync(service, SECRET_COLLECTION_DEFAULT,
                                                                    SECRET_COLLECTION_NONE, nullptr, &error);
    ASSERT_EQ(error, nullptr);
    ASSERT_NE(collection, nullptr);
    GList* locking = g_list_append(nullptr, collection);
    ASSERT_EQ(secret_service_lock_sync(service, locking, nullptr, nullptr, &error), 1);
    const Stopwatch watch;
    EXPECT_TRUE(keychain.exists(Keychain::currentService));
    EXPECT_LT(watch.ms(), 2000);
    secret_collection_refresh(collection);
    EXPECT_TRUE(secret_collection_get_locked(collection));
    g_list_free(locking);
    g_object_unref(collection);
    g_object_unref(service);
}

/// Run apart, with no bus: GLib keeps the bus of a process that has found one.
TEST(WithoutSecretService, SaysSo) {
    SecretServiceKeychain keychain;
    EXPECT_FALSE(keychain.exists(Keychain::currentService));
    EXPECT_FALSE(keychain.load(Keychain::currentService).has_value());
    keychain.remove(Keychain::currentService);
    const auto failure = keychain.save({"operator", Secret("s3cret-word")});
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->find("s3cret-word"), std::string::npos);
    EXPECT_TRUE(failure->starts_with("The password couldn't be kept")) << *failure;
}

} // namespace corvane
