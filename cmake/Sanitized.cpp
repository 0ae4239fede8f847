/// What every program of a sanitizer build has besides its own code.

/// Libraries stay where they are: what a graphics driver keeps for itself would count as lost once it is unloaded.
extern "C" int dlclose(void* /*handle*/)
{
    return 0;
}

/// GCC 12's leak sanitizer misreads the thread storage of libraries that are loaded late, and falls over it now and then.
extern "C" const char*
__asan_default_options() // NOLINT(readability-identifier-naming,bugprone-reserved-identifier)
{
    return "intercept_tls_get_addr=0";
}
