// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Reads the installed programs as ELF files: a flag of the build that gets lost shows nowhere else.

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstring>
#include <elf.h>
#include <gtest/gtest.h>

#include "test_main.h"

namespace quayline::testing {
namespace {

class ElfFile final {
 public:
  explicit ElfFile(const QString& path) : file_(path) {
    if (file_.open(QIODevice::ReadOnly)) {
      bytes_ = file_.readAll();
    }
  }

  bool IsRead() const { return bytes_.startsWith(ELFMAG) && bytes_.at(EI_CLASS) == ELFCLASS64; }
  Elf64_Ehdr Header() const { return At<Elf64_Ehdr>(0); }

  std::optional<Elf64_Phdr> Segment(Elf64_Word type) const {
    const Elf64_Ehdr header = Header();
    for (Elf64_Half i = 0; i < header.e_phnum; ++i) {
      const auto segment = At<Elf64_Phdr>(header.e_phoff + i * sizeof(Elf64_Phdr));
      if (segment.p_type == type) {
        return segment;
      }
    }
    return std::nullopt;
  }

  // Nothing for a section that the file lacks.
  std::optional<QByteArray> Section(const char* name) const {
    const Elf64_Ehdr header = Header();
    const auto section = [&](Elf64_Half i) {
      return At<Elf64_Shdr>(header.e_shoff + i * sizeof(Elf64_Shdr));
    };
    const qsizetype names = static_cast<qsizetype>(section(header.e_shstrndx).sh_offset);
    for (Elf64_Half i = 0; i < header.e_shnum; ++i) {
      const Elf64_Shdr each = section(i);
      if (qstrcmp(bytes_.constData() + names + each.sh_name, name) == 0) {
        return bytes_.mid(static_cast<qsizetype>(each.sh_offset),
                          each.sh_type == SHT_NOBITS ? 0 : static_cast<qsizetype>(each.sh_size));
      }
    }
    return std::nullopt;
  }

  Elf64_Xword Dynamic(Elf64_Sxword tag) const {
    const QByteArray table = Section(".dynamic").value_or(QByteArray());
    for (qsizetype at = 0; at + qsizetype{sizeof(Elf64_Dyn)} <= table.size();
         at += sizeof(Elf64_Dyn)) {
      Elf64_Dyn entry = {};
      std::memcpy(&entry, table.constData() + at, sizeof(entry));
      if (entry.d_tag == tag) {
        return entry.d_un.d_val;
      }
    }
    return 0;
  }

 private:
  template <typename T>
  T At(size_t offset) const {
    T value = {};
    std::memcpy(&value, bytes_.constData() + offset, sizeof(T));
    return value;
  }

  QFile file_;
  QByteArray bytes_;
};

class HardeningTest : public ::testing::TestWithParam<const char*> {};

TEST_P(HardeningTest, TheProgramIsBuiltAgainstAttacksOnItsMemory) {
  const ElfFile program(QString::fromUtf8(GetParam()));
  ASSERT_TRUE(program.IsRead());
  EXPECT_EQ(program.Header().e_type, ET_DYN) << "is not position-independent";
  EXPECT_NE(program.Dynamic(DT_FLAGS_1) & DF_1_PIE, 0U);
  EXPECT_NE(program.Dynamic(DT_FLAGS_1) & DF_1_NOW, 0U) << "binds symbols late";
  EXPECT_TRUE(program.Segment(PT_GNU_RELRO)) << "relocations stay writable";
  ASSERT_TRUE(program.Segment(PT_GNU_STACK));
  EXPECT_EQ(program.Segment(PT_GNU_STACK)->p_flags & PF_X, 0U) << "the stack is executable";
#ifndef QUAYLINE_SANITIZE
  const QByteArray imported = program.Section(".dynstr").value_or(QByteArray());
  EXPECT_TRUE(imported.contains("__stack_chk_fail")) << "no stack protector";
#ifdef __x86_64__
  EXPECT_GT(program.Section(".text")->count("\xf3\x0f\x1e\xfa"), 50) << "no landing marks";
#endif
#ifdef NDEBUG
  // The reader copies nothing into a place whose size the compiler knows.
  EXPECT_TRUE(imported.contains("__memcpy_chk") ||
              QByteArrayView(GetParam()) == QByteArrayView(QUAYLINE_READER))
      << "no checked library calls";
#endif
#endif
}

#if defined(NDEBUG) && !defined(QUAYLINE_SANITIZE)
TEST_P(HardeningTest, TheSymbolsAreInAFileOfTheirOwn) {
  const QFileInfo file(QString::fromUtf8(GetParam()));
  const ElfFile program(file.filePath());
  ASSERT_TRUE(program.IsRead());
  EXPECT_FALSE(program.Section(".symtab"));
  EXPECT_FALSE(program.Section(".debug_info"));
  const QByteArray link = program.Section(".gnu_debuglink").value_or(QByteArray());
  const ElfFile symbols(
      file.dir().filePath(QStringLiteral(".debug/") + QString::fromUtf8(link.constData())));
  ASSERT_TRUE(symbols.IsRead()) << link.constData();
  EXPECT_TRUE(symbols.Section(".debug_line"));
  EXPECT_TRUE(symbols.Section(".symtab"));
  EXPECT_EQ(symbols.Section(".note.gnu.build-id"), program.Section(".note.gnu.build-id"));
}
#endif

INSTANTIATE_TEST_SUITE_P(Programs, HardeningTest,
                         ::testing::Values(QUAYLINE, QUAYLINE_CLI, QUAYLINE_DBTOOL,
                                           QUAYLINE_READER));

}  // namespace
}  // namespace quayline::testing
