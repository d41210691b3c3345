// A library that knows nothing of ours, built as its author would: optimised, with the compiler's own kind of symbols.

using Work = void (*)(void* data);

[[gnu::always_inline]] static inline void inlinedInPlugin(Work work, void* data)
{
    work(data);
    asm volatile("" ::: "memory");
}

[[gnu::noinline]] static void hiddenInPlugin(Work work, void* data)
{
    inlinedInPlugin(work, data);
    asm volatile("" ::: "memory");
}

extern "C" void callFromPlugin(Work work, void* data)
{
    hiddenInPlugin(work, data);
    asm volatile("" ::: "memory");
}
