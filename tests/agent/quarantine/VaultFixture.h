#pragma once

#include "agent/fakes/Needs.h"
#include "agent/fakes/ScratchFolder.h"
#include "agent/fakes/ScratchMount.h"
#include "agent/quarantine/ContentDigest.h"
#include "agent/quarantine/SafeOpen.h"
#include "agent/quarantine/Vault.h"
#include "agent/store/Store.h"

#include <gmock/gmock.h>
#include <map>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <tuple>

namespace korvale::agent {

/// Where the bad files lie.
enum class Files { InScratchFolder, OnExt4, OnTmpfs };
/// Where the vault is, seen from there.
enum class VaultOn { SameFileSystem, AnotherFileSystem };

/// A store, a vault and a folder with files in it.
class VaultFixture : public ::testing::Test {
protected:
    void make(Files files, VaultOn vault) {
        std::filesystem::create_directory(m_scratch / "files");
        if (files == Files::OnExt4) {
            m_mount.emplace(ScratchMount::ext4(m_scratch / "files", 8));
        } else if (files == Files::OnTmpfs) {
            m_mount.emplace(ScratchMount::tmpfs(m_scratch / "files", "size=8m,mode=0755"));
        }
        if (m_mount) {
            KORVALE_NEEDS(mounted(*m_mount, files == Files::OnExt4 ? "ext4" : "tmpfs"));
        }
        m_folder = m_scratch / "files/home";
        std::filesystem::create_directory(m_folder);
        m_vaultPath =
            vault == VaultOn::SameFileSystem ? m_scratch / "files/vault" : m_scratch / "vault";
        openVault();
    }

    /// As a process that begins does; what the last one left is dealt with.
    void openVault() {
        std::string error;
        m_vault.reset();
        m_store.reset();
        m_store = Store::open(m_scratch / "findings.db", error);
        ASSERT_NE(m_store, nullptr) << error;
        m_vault = Vault::open(m_vaultPath, *m_store, error);
        ASSERT_NE(m_vault, nullptr) << error;
    }

    [[nodiscard]] std::string path(const std::string& name) const { return m_folder + '/' + name; }

    /// What a scan would ask for: a finding, and the file as it is now.
    TakeRequest judged(const std::string& name) {
        m_folderFd = openFolder(m_folder);
        const UniqueFd file = openRegular(m_folderFd.get(), name);
        EXPECT_TRUE(file) << name;
        TakeRequest request;
        request.folder = m_folderFd.get();
        request.name = name;
        request.path = path(name);
        request.judged = *identify(file.get());
        request.sha256 = *contentDigest(file.get());
        Finding finding;
        finding.id = request.sha256;
        finding.path = request.path;
        request.finding = m_store->add(finding).number;
        return request;
    }

    [[nodiscard]] FindingState stateOf(const TakeRequest& request) const {
        return m_store->finding(request.finding)->state;
    }
    /// Names in the vault's folder.
    [[nodiscard]] std::vector<std::string> inVault() const { return namesIn(m_vaultPath); }
    [[nodiscard]] std::vector<std::string> inFolder() const { return namesIn(m_folder); }

    static std::vector<std::string> namesIn(const std::string& folder) {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    ScratchFolder m_scratch;
    std::optional<ScratchMount> m_mount;
    std::string m_folder;
    std::string m_vaultPath;
    std::unique_ptr<Store> m_store;
    std::unique_ptr<Vault> m_vault;
    UniqueFd m_folderFd;
};

/// The same case on each kind of file system.
class VaultTest : public VaultFixture,
                  public ::testing::WithParamInterface<std::tuple<Files, VaultOn>> {
protected:
    void SetUp() override {
        const auto [files, vault] = GetParam();
        if (files != Files::InScratchFolder) {
            KORVALE_NEEDS(mounts());
        }
        make(files, vault);
    }
    [[nodiscard]] static bool canGoOn() { return !IsSkipped() && !HasFatalFailure(); }
};

inline std::string placeName(const ::testing::TestParamInfo<std::tuple<Files, VaultOn>>& place) {
    static const std::map<Files, std::string> files{{Files::InScratchFolder, "ScratchFolder"},
                                                    {Files::OnExt4, "Ext4"},
                                                    {Files::OnTmpfs, "Tmpfs"}};
    return files.at(std::get<0>(place.param)) +
           (std::get<1>(place.param) == VaultOn::SameFileSystem ? "" : "VaultElsewhere");
}

#define KORVALE_ON_EVERY_FILE_SYSTEM(suite)                                                        \
    INSTANTIATE_TEST_SUITE_P(                                                                      \
        On, suite,                                                                                 \
        ::testing::Values(std::tuple(Files::InScratchFolder, VaultOn::SameFileSystem),             \
                          std::tuple(Files::OnExt4, VaultOn::SameFileSystem),                      \
                          std::tuple(Files::OnExt4, VaultOn::AnotherFileSystem),                   \
                          std::tuple(Files::OnTmpfs, VaultOn::SameFileSystem),                     \
                          std::tuple(Files::OnTmpfs, VaultOn::AnotherFileSystem)),                 \
        placeName)

} // namespace korvale::agent
