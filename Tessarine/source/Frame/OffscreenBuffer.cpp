#include "OffscreenBuffer.h"
#include "Failure.h"
#include <GL/gl.h>
#include <GL/glext.h>
#include <string>

namespace tessarine
{
namespace
{
unsigned CreateStore(GLenum format, GLenum place, int width, int height)
{
    GLuint name = 0;
    glGenRenderbuffers(1, &name);
    glBindRenderbuffer(GL_RENDERBUFFER, name);
    glRenderbufferStorage(GL_RENDERBUFFER, format, width, height);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, place, GL_RENDERBUFFER, name);
    return name;
}
}

OffscreenBuffer::OffscreenBuffer(int width, int height) : m_nWidth(width), m_nHeight(height)
{
    glGenFramebuffers(1, &m_nBuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, m_nBuffer);
    m_nColor = CreateStore(GL_RGB8, GL_COLOR_ATTACHMENT0, width, height);
    m_nDepth = CreateStore(GL_DEPTH_COMPONENT24, GL_DEPTH_ATTACHMENT, width, height);
    if (m_nBuffer == 0 || glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE)
    {
        Free();
        throw Failure("the GL driver gives no off-screen buffer of " + std::to_string(width) + " x " +
                      std::to_string(height) +
                      " pixels; use one that has GL 3.0, as that of libgl1-mesa-dri");
    }
}

OffscreenBuffer::~OffscreenBuffer()
{
    Free();
}

void OffscreenBuffer::CopyToSurface() const
{
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0);
    glClear(GL_COLOR_BUFFER_BIT);
    glBlitFramebuffer(0, 0, m_nWidth, m_nHeight, 0, 0, m_nWidth, m_nHeight, GL_COLOR_BUFFER_BIT, GL_NEAREST);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, m_nBuffer);
}

void OffscreenBuffer::Free()
{
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    glDeleteFramebuffers(1, &m_nBuffer);
    glDeleteRenderbuffers(1, &m_nColor);
    glDeleteRenderbuffers(1, &m_nDepth);
}
}
