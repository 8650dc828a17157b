// Opens what the user asked for with the programs of the desktop.
#pragma once

class QUrl;

class Workspace {
public:
    virtual ~Workspace() = default;
    static Workspace& shared(); // Defined in App/Wiring.cpp.

    // By the program that the user has chosen for the scheme, or for the kind of file; an
    // application that a file URL points to is started itself. Returns at once; what nothing opens
    // is ignored.
    virtual void open(const QUrl& url) = 0;
};
