#pragma once

#include <cstdint>

/// The codes of unwind tables and their expressions, by the names of the DWARF standard and its extension for exception
/// frames.
namespace Oxa_1_1::formats::dwarf
{

/// How a pointer is written: the low half of the byte is the format, the high one what the number counts from.
enum PointerEncoding : std::uint8_t
{
    DW_EH_PE_absptr = 0x00,
    DW_EH_PE_uleb128 = 0x01,
    DW_EH_PE_udata2 = 0x02,
    DW_EH_PE_udata4 = 0x03,
    DW_EH_PE_udata8 = 0x04,
    DW_EH_PE_sleb128 = 0x09,
    DW_EH_PE_sdata2 = 0x0A,
    DW_EH_PE_sdata4 = 0x0B,
    DW_EH_PE_sdata8 = 0x0C,
    DW_EH_PE_pcrel = 0x10,
    DW_EH_PE_datarel = 0x30,
    DW_EH_PE_omit = 0xFF
};
inline constexpr std::uint8_t POINTER_FORMAT = 0x0F;
inline constexpr std::uint8_t POINTER_BASE = 0x70;

/// Instructions that build the rules of a frame. The first three hold their operand in the low six bits.
enum FrameInstruction : std::uint8_t
{
    DW_CFA_advance_loc = 0x40,
    DW_CFA_offset = 0x80,
    DW_CFA_restore = 0xC0,

    DW_CFA_nop = 0x00,
    DW_CFA_set_loc = 0x01,
    DW_CFA_advance_loc1 = 0x02,
    DW_CFA_advance_loc2 = 0x03,
    DW_CFA_advance_loc4 = 0x04,
    DW_CFA_offset_extended = 0x05,
    DW_CFA_restore_extended = 0x06,
    DW_CFA_undefined = 0x07,
    DW_CFA_same_value = 0x08,
    DW_CFA_register = 0x09,
    DW_CFA_remember_state = 0x0A,
    DW_CFA_restore_state = 0x0B,
    DW_CFA_def_cfa = 0x0C,
    DW_CFA_def_cfa_register = 0x0D,
    DW_CFA_def_cfa_offset = 0x0E,
    DW_CFA_def_cfa_expression = 0x0F,
    DW_CFA_expression = 0x10,
    DW_CFA_offset_extended_sf = 0x11,
    DW_CFA_def_cfa_sf = 0x12,
    DW_CFA_def_cfa_offset_sf = 0x13,
    DW_CFA_val_offset = 0x14,
    DW_CFA_val_offset_sf = 0x15,
    DW_CFA_val_expression = 0x16,
    DW_CFA_GNU_args_size = 0x2E
};
inline constexpr std::uint8_t PRIMARY_INSTRUCTION = 0xC0;
inline constexpr std::uint8_t PRIMARY_OPERAND = 0x3F;

/// Operations of the stack machine.
enum Operation : std::uint8_t
{
    DW_OP_deref = 0x06,
    DW_OP_const1u = 0x08,
    DW_OP_const1s = 0x09,
    DW_OP_const2u = 0x0A,
    DW_OP_const2s = 0x0B,
    DW_OP_const4u = 0x0C,
    DW_OP_const4s = 0x0D,
    DW_OP_constu = 0x10,
    DW_OP_consts = 0x11,
    DW_OP_and = 0x1A,
    DW_OP_minus = 0x1C,
    DW_OP_plus = 0x22,
    DW_OP_plus_uconst = 0x23,
    DW_OP_shl = 0x24,
    DW_OP_ge = 0x2A,
    DW_OP_lit0 = 0x30,
    DW_OP_lit31 = 0x4F,
    DW_OP_breg0 = 0x70,
    DW_OP_breg16 = 0x80
};

}  // namespace Oxa_1_1::formats::dwarf
