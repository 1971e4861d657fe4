// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/faults.h"

namespace quillon::imaging::fault {

using host::Problem;
using host::Status;

Status NoImage() { return {Problem::Other, "没有图片"}; }
Status EmptyFile() { return {Problem::Damaged, "文件是空的"}; }
Status NotAFile() { return {Problem::Unsupported, "这不是图片文件"}; }
Status NotAPicture() { return {Problem::Unsupported, "无法识别的图片格式"}; }
Status UnreadKind() { return {Problem::Unsupported, "不支持这种图片的编码方式"}; }
Status DamagedPicture() { return {Problem::Damaged, "图片数据损坏或不完整"}; }
Status SidesTooLarge() { return {Problem::TooLarge, "图片尺寸超出允许的范围"}; }
Status OutOfMemory() { return {Problem::TooLarge, "图片太大，内存不足"}; }
Status ResultTooLarge() { return {Problem::TooLarge, "结果太大，此格式无法保存"}; }
Status EmptyRectangle() { return {Problem::Other, "裁切区域的宽和高必须大于零"}; }
Status NoSize() { return {Problem::Other, "结果的宽和高至少要有 1 像素"}; }
Status UnknownType() { return {Problem::Unsupported, "不支持保存为此类型"}; }
Status NotSaved() { return {Problem::Other, "图片保存失败"}; }
Status NoProfile() { return {Problem::Missing, "找不到颜色配置文件"}; }
Status NotAProfile() { return {Problem::Unsupported, "不是可用的颜色配置文件"}; }

}  // namespace quillon::imaging::fault
