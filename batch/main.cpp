#include "BatchTool.h"

int main(int argc, char** argv)
{
    return tessarine::RunBatchTool({argv + 1, argv + argc});
}
