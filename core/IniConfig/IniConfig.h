// The settings store: one profile file in the user's folder for application data, read and written key by
// key. Nothing is cached, so two programs (or two modules of one) may share the file.
#pragma once

#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

class IFileStore;
class ILocations;

/// One section of the store. It holds no values: each call accesses the file. Writing changes one key under
/// the file's lock; a failed write is not reported.
class CIniConfigData : boost::noncopyable {
public:
    CIniConfigData(std::wstring strPath, std::wstring strSection, IFileStore& files);

    /// A child section; its name is this one's name, a backslash, and `strName`.
    virtual boost::shared_ptr<CIniConfigData> GetSection(const std::wstring& strName);
    /// The value, or the default when there is none; truncated to 1023 characters in both cases.
    virtual std::wstring GetString(const std::wstring& strKey, const std::wstring& strDefault);
    /// The value as a number: a sign, then decimal digits or 0x and hexadecimal ones, wrapped to 32 bits;
    /// the rest is ignored, no digits give 0. Returns the default when the value is missing or empty.
    virtual int32_t GetInt(const std::wstring& strKey, int32_t nDefault);
    virtual void SetString(const std::wstring& strKey, const std::wstring& strValue);
    /// Written as decimal text.
    virtual void SetInt(const std::wstring& strKey, int32_t nValue);
    /// Sets several keys in one write of the file.
    virtual void SetStrings(const std::vector<std::pair<std::wstring, std::wstring>>& vValues);
    void SetInts(const std::vector<std::pair<std::wstring, int32_t>>& vValues);
    virtual ~CIniConfigData() = default;

private:
    std::wstring m_strPath;
    std::wstring m_strSection;
    IFileStore& m_files;
};

/// The root of the store. `files` outlives it and its sections.
class CIniConfig : boost::noncopyable {
public:
    CIniConfig(std::wstring strPath, IFileStore& files);

    /// A top-level section.
    virtual boost::shared_ptr<CIniConfigData> GetSection(const std::wstring& strName);
    virtual ~CIniConfig() = default;

    /// The profile file's path, built by FindProfilePath.
    static std::wstring FindPath(ILocations& locations);

private:
    std::wstring m_strPath;
    IFileStore& m_files;
};

/// The path of a file in the application's own folder, which is created if missing; empty when the user has
/// no folder for application data.
std::wstring FindProfilePath(ILocations& locations, const std::wstring& strFileName);
