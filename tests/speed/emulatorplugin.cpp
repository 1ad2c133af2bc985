// A plugin of the emulator: counts the instructions between the marks that countwork sets.
//
// Usage: qemu-arm -plugin PLUGIN,counts=FILE COUNTWORK...    writes one number per line into FILE, in the order of the marks

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>

// No package has the header of this interface, which is the emulator's documented one, version 1.
extern "C" {

using qemu_plugin_id_t = std::uint64_t;
struct qemu_plugin_info;
struct qemu_plugin_tb;
enum qemu_plugin_op { QEMU_PLUGIN_INLINE_ADD_U64 };
using qemu_plugin_vcpu_tb_trans_cb_t = void (*)(qemu_plugin_id_t id, qemu_plugin_tb *block);
using Word = std::uint64_t;
using qemu_plugin_vcpu_syscall_cb_t = void (*)(qemu_plugin_id_t id, unsigned int cpu, std::int64_t call, Word, Word, Word, Word, Word, Word, Word, Word);

void qemu_plugin_register_vcpu_tb_trans_cb(qemu_plugin_id_t id, qemu_plugin_vcpu_tb_trans_cb_t translated);
void qemu_plugin_register_vcpu_syscall_cb(qemu_plugin_id_t id, qemu_plugin_vcpu_syscall_cb_t called);
void qemu_plugin_register_vcpu_tb_exec_inline(qemu_plugin_tb *block, qemu_plugin_op operation, void *counter, std::uint64_t number);
std::size_t qemu_plugin_tb_n_insns(const qemu_plugin_tb *block);

extern const int qemu_plugin_version;
const int qemu_plugin_version = 1;

int qemu_plugin_install(qemu_plugin_id_t id, const qemu_plugin_info *info, int argumentCount, char **arguments);
}

namespace
{

constexpr std::int64_t accessCall = 33; ///< of 32-bit Arm
constexpr Word mark = 0x5ee8; ///< as in countwork.cpp
constexpr const char *argumentName = "counts=";

std::FILE *file = nullptr;
std::uint64_t instructions = 0;
std::uint64_t instructionsBefore = 0;
bool isInside = false;

/// A block that is entered is run to its end, and a system call is one.
void countBlock(qemu_plugin_id_t, qemu_plugin_tb *block)
{
    qemu_plugin_register_vcpu_tb_exec_inline(block, QEMU_PLUGIN_INLINE_ADD_U64, &instructions, qemu_plugin_tb_n_insns(block));
}

void lookForMark(qemu_plugin_id_t, unsigned int, std::int64_t call, Word, Word mode, Word, Word, Word, Word, Word, Word)
{
    if (call != accessCall || mode != mark)
        return;
    if (isInside) {
        std::fprintf(file, "%llu\n", static_cast<unsigned long long>(instructions - instructionsBefore));
        std::fflush(file);
    }
    isInside = !isInside;
    instructionsBefore = instructions;
}

} // namespace

int qemu_plugin_install(qemu_plugin_id_t id, const qemu_plugin_info *, int argumentCount, char **arguments)
{
    const std::size_t length = std::strlen(argumentName);
    if (argumentCount != 1 || std::strncmp(arguments[0], argumentName, length) != 0)
        return 1;
    file = std::fopen(arguments[0] + length, "w");
    if (!file)
        return 1;
    qemu_plugin_register_vcpu_tb_trans_cb(id, countBlock);
    qemu_plugin_register_vcpu_syscall_cb(id, lookForMark);
    return 0;
}
