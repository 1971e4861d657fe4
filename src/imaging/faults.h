// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "host/status.h"

// The errors of the imaging library. Each function returns a kind of problem and its one Chinese sentence for the user,
// so that the same failure reads the same in every list and report.
namespace quillon::imaging::fault {

using host::Problem;
using host::Status;

// An operation on an empty Image.
inline Status NoImage() { return {Problem::Other, "没有图片"}; }
// The file has no bytes.
inline Status EmptyFile() { return {Problem::Damaged, "文件是空的"}; }
// A folder or a device.
inline Status NotAFile() { return {Problem::Unsupported, "这不是图片文件"}; }
// The content has no known format.
inline Status NotAPicture() { return {Problem::Unsupported, "无法识别的图片格式"}; }
// A known format in a variant that cannot be decoded.
inline Status UnreadKind() { return {Problem::Unsupported, "不支持这种图片的编码方式"}; }
// Truncated or corrupt.
inline Status DamagedPicture() { return {Problem::Damaged, "图片数据损坏或不完整"}; }
// Sides or pixels exceed the limits.
inline Status SidesTooLarge() { return {Problem::TooLarge, "图片尺寸超出允许的范围"}; }
// The decoded size exceeds the limit, or an allocation failed.
inline Status OutOfMemory() { return {Problem::TooLarge, "图片太大，内存不足"}; }
// The output format cannot store a picture of this size.
inline Status ResultTooLarge() { return {Problem::TooLarge, "结果太大，此格式无法保存"}; }
// The crop rectangle is empty.
inline Status EmptyRectangle() { return {Problem::Other, "裁切区域的宽和高必须大于零"}; }
// The result would have no pixels.
inline Status NoSize() { return {Problem::Other, "结果的宽和高至少要有 1 像素"}; }
// There is no encoder for this type.
inline Status UnknownType() { return {Problem::Unsupported, "不支持保存为此类型"}; }
// The encoder failed, or its output did not pass CheckOutput.
inline Status NotSaved() { return {Problem::Other, "图片保存失败"}; }
// The profile does not exist.
inline Status NoProfile() { return {Problem::Missing, "找不到颜色配置文件"}; }
// The profile is damaged or for other colours.
inline Status NotAProfile() { return {Problem::Unsupported, "不是可用的颜色配置文件"}; }

}  // namespace quillon::imaging::fault
