// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Empty: what is compiled for it is the header that all targets share. See quayline.cmake.
