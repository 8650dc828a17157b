// Nothing but the headers that are precompiled with it.
